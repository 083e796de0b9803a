#include "desktop/Announcements.h"

#include <QApplication>
#include <chrono>
#include <string>

#include "desktop/views/AnnouncementPanel.h"
#include "desktop/views/AnnouncementsView.h"
#include "desktop/views/PluginViews.h"
#include "platform/Text.h"
#include "simulation/VirtualPlatform.h"
#include "simulation/windows/RememberingFace.h"

namespace talvora::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int many = 10'000;
constexpr int arrivals = 200;

std::string lineOf(int number) {
    return CStr(number) + " Anna" + CStr(number % 97) + " " + CStr(number % 72) + " 13/03/2026_" +
           CStr(10 + number % 14) + ":00:00 " + CStr(number % 8) +
           " We meet at the usual place[#n]and bring what there is, as every week";
}

class OpenList {
  public:
    OpenList() {
        std::string all;
        for (int number = 1; number <= many; ++number) all += lineOf(number) + "\r\n";
        around_.disk.put("Mail/Announcements.lst", all);
        Manager.Start();
        face_.acts = true;
        Form.Show();
        Panel.resize(320, 240);
        Panel.show();
        Form.LoadList();
        Paint();
    }
    // What the toolkit has put off is done, too.
    void Paint() {
        QApplication::processEvents();
        View.repaint();
        Panel.repaint();
    }

  private:
    test::VirtualTime time_;
    test::VirtualNetwork network_{time_};
    test::VirtualPlatform around_{time_, network_};
    GlobError globError_{around_.platform};
    ComponentSettings settings_{around_.settings};
    HostGate gate_{settings_};
    picAnn panel_;
    test::RememberingFace face_;
    ViewMemory memory_{around_.settings};
    PluginViews plugins_;
    ViewSite site_{face_, around_.platform, memory_, plugins_};

  public:
    modAnnounceManager Manager{around_.platform, globError_, settings_, gate_, [](const std::string&) {}};
    frmAnnouncements Form{around_.platform, globError_, Manager, panel_};
    AnnouncementsView View{Form, site_};
    AnnouncementPanel Panel{panel_, around_.platform, nullptr};
};

}  // namespace

double loadAnnouncements() {
    OpenList list;
    list.Form.ListView1.ListItems.Clear();
    list.Paint();
    const auto start = Clock::now();
    list.Form.LoadList();
    list.Paint();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double announcementArrives() {
    OpenList list;
    const auto start = Clock::now();
    for (int number = many + 1; number <= many + arrivals; ++number) {
        list.Manager.HandleAnnData("ANN " + lineOf(number));
        list.Paint();
    }
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count() / arrivals;
}

}  // namespace talvora::bench
