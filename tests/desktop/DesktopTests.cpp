// The desktop's clipboard, links and windows.

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QMimeData>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include "desktop/PictureCache.h"
#include "desktop/QtDesktop.h"
#include "platform/Form.h"
#include "platform/rich/RichText.h"

namespace talvora::test {

TEST(QtClipboard, HoldsOneTextInBothForms) {
    QtClipboard clipboard;
    clipboard.Clear();
    EXPECT_FALSE(clipboard.GetText(ClipboardFormat::Text));
    clipboard.SetText("\xC3\xE5\xE9\xE1\r\nx", ClipboardFormat::Text);
    clipboard.SetText("{\\rtf1 \xC3}", ClipboardFormat::RTF);
    EXPECT_EQ(QApplication::clipboard()->text(), QString::fromUtf8("Γεια\nx"));
    EXPECT_EQ(QApplication::clipboard()->mimeData()->data("text/rtf"), "{\\rtf1 \xC3}");
    EXPECT_EQ(clipboard.GetText(ClipboardFormat::Text), "\xC3\xE5\xE9\xE1\nx");
    EXPECT_EQ(clipboard.GetText(ClipboardFormat::RTF), "{\\rtf1 \xC3}");
    EXPECT_EQ(clipboard.GetData(), nullptr);
}

TEST(QtClipboard, PassesPicturesOn) {
    QImage image(5, 3, QImage::Format_RGB32);
    image.fill(Qt::green);
    QApplication::clipboard()->setImage(image);
    QtClipboard clipboard;
    const auto picture = clipboard.GetData();
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(std::pair(picture->WidthTwips, picture->HeightTwips), std::pair(75, 45));
    EXPECT_EQ(decodePicture(*picture).pixelColor(4, 2), QColor(Qt::green));
    clipboard.Clear();
    clipboard.SetData(picture);
    EXPECT_EQ(QApplication::clipboard()->image().size(), QSize(5, 3));
}

TEST(PictureCache, KeepsToItsBounds) {
    PictureCache cache;
    const auto make = [](int width, int height) {
        QApplication::clipboard()->setImage(QImage(width, height, QImage::Format_RGB32));
        return QtClipboard().GetData();
    };
    const auto large = make(2000, 2000);
    cache.beginFrame();
    EXPECT_EQ(cache.get(large, {100, 100}).Image.size(), QSize(100, 100));
    EXPECT_EQ(cache.get(large, {100, 100}).Image.size(), QSize(100, 100)) << "decoded once";
    EXPECT_TRUE(cache.get(make(1000, 1000), {1000, 1000}).Image.isNull()) << "not in this frame any more";
    EXPECT_TRUE(cache.Waiting());
    for (int i = 0; i < 8; ++i) {
        cache.beginFrame();
        EXPECT_EQ(cache.get(std::make_shared<Picture>(*large), {9000, 9000}).Image.size(), QSize(2000, 2000));
        EXPECT_LE(cache.Pixels(), PictureCache::MaxPixels);
    }
    auto lies = std::make_shared<Picture>(*large);
    lies->PixelWidth = 1999;
    cache.beginFrame();
    EXPECT_TRUE(cache.get(lies, {10, 10}).Broken);
}

TEST(QtDesktop, OpensLinksAndNothingElse) {
    const std::pair<std::string, bool> links[] = {
        {"http://a.example/x?y=1", true},
        {"HTTPS://a.example", true},
        {"ftp://a.example", true},
        {"http:", false},
        {"file:///etc/passwd", false},
        {"javascript:alert(1)", false},
        {"-http://a.example", false},
        {"http://a\r\nb", false},
        {"http://a\x9f", false},
        {"http://a b", false},
        {"http://" + std::string(9000, 'a'), false},
        {"", false},
    };
    Guard guard;
    QtDesktop desktop(guard);
    for (const auto& [link, allowed] : links) {
        EXPECT_EQ(isOpenableLink(link), allowed) << link;
        if (allowed) continue;
        EXPECT_THROW(desktop.Open(link), RuntimeError) << link;
    }
}

TEST(QtDesktop, GivesALinkToTheOpenerAsOneArgumentThatNoShellWouldRead) {
    const QTemporaryDir folder;
    QFile opener(folder.filePath("xdg-open"));
    ASSERT_TRUE(opener.open(QFile::WriteOnly));
    opener.write("#!/bin/sh\necho $# \"$1\" $(umask) > \"$0.part\"; mv \"$0.part\" \"$0.told\"\n");
    opener.close();
    opener.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", folder.path().toLocal8Bit() + ":" + path);
    Guard guard;
    QtDesktop(guard).Open("http://a.example/$(id)`id`;x='y'&z");
    qputenv("PATH", path);
    QFile told(folder.filePath("xdg-open.told"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return told.exists(); }, 60'000));
    ASSERT_TRUE(told.open(QFile::ReadOnly));
    EXPECT_EQ(told.readAll(), "1 http://a.example/%24%28id%29%60id%60;x=%27y%27&z 0022\n");
}

TEST(QtDesktop, TellsInWhichWindowTheUserWorks) {
    Guard guard;
    QtDesktop desktop(guard);
    Form first, second;
    auto one = std::make_unique<QWidget>();
    QWidget other;
    desktop.Register(first, *one);
    desktop.Register(second, other);
    int told = 0;
    const auto on = desktop.ForegroundChanged.connect([&] { ++told; });
    const auto activate = [](QWidget& window) {
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    };
    activate(*one);
    EXPECT_EQ(desktop.ForegroundWindow(), &first);
    activate(other);
    EXPECT_EQ(desktop.ForegroundWindow(), &second);
    EXPECT_EQ(told, 2);
    one.reset();
    desktop.Forget(second);
    EXPECT_EQ(desktop.ForegroundWindow(), nullptr);
    EXPECT_EQ(desktop.ScreenWidth(), QApplication::primaryScreen()->size().width() * 15);
}

}  // namespace talvora::test
