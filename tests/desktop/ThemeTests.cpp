// The family of icons, the colours of the theme, and texts in boxes.

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRegularExpression>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <tuple>

#include "desktop/TextNote.h"
#include "desktop/Theme.h"

namespace talvora::test {

namespace {

// The palette of the application while a test wants another.
struct PaletteOf {
    PaletteOf(QColor ground, QColor text) {
        QPalette palette(text, ground, ground, ground, ground, text, ground);
        palette.setColor(QPalette::Base, ground);
        QApplication::setPalette(palette);
    }
    ~PaletteOf() { QApplication::setPalette(before); }
    QPalette before = QApplication::palette();
};

QImage drawn(const QIcon& icon, int side, QIcon::Mode mode = QIcon::Normal) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon.paint(&painter, image.rect(), Qt::AlignCenter, mode);
    return image;
}

int ink(const QImage& image) {
    int sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) sum += qAlpha(image.pixel(x, y));
    }
    return sum / 255;
}

}  // namespace

TEST(Theme, EveryIconShowsAtEverySizeAndFollowsThePalette) {
    const QStringList names = theme::iconNames();
    ASSERT_GT(names.size(), 40);
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        const QIcon icon = theme::icon(name);
        const PaletteOf light(Qt::white, Qt::black);
        const QImage onLight = drawn(icon, 32);
        for (const int side : {16, 32}) EXPECT_GT(ink(drawn(icon, side)), side) << side;
        EXPECT_LT(ink(drawn(icon, 32, QIcon::Disabled)), ink(onLight) * 2 / 3);
        EXPECT_EQ(icon.pixmap(QSize(16, 16), 2.0).size(), QSize(32, 32));
        const PaletteOf dark(Qt::black, Qt::white);
        static const QRegularExpression ownColours(
            QStringLiteral("^(app|tray-|session-|state-|info|warning|error|question|urgent|announcement-2)"));
        EXPECT_EQ(drawn(icon, 32) == onLight, name.contains(ownColours));
    }
    EXPECT_TRUE(theme::icon(QStringLiteral("no such")).isNull());
    EXPECT_TRUE(theme::icon({}).isNull());
}

TEST(Theme, TheFamilyHasEveryIconThatIsNamed) {
    const std::regex named(R"re((?:theme::icon|iconButton|add)\(\s*QStringLiteral\("([a-z0-9-]+)"\))re");
    int count = 0;
    for (const char* folder : {"src/desktop", "src/orrery/face"}) {
        const auto root = std::filesystem::path(__FILE__).parent_path() / "../.." / folder;
        if (!std::filesystem::exists(root)) continue;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            if (entry.path().extension() != ".cpp") continue;
            std::ifstream in(entry.path());
            const std::string text{std::istreambuf_iterator<char>(in), {}};
            for (std::sregex_iterator at(text.begin(), text.end(), named), end; at != end; ++at, ++count) {
                const QString name = QString::fromStdString((*at)[1]);
                EXPECT_FALSE(theme::icon(name).isNull()) << (*at)[1] << " in " << entry.path();
            }
        }
    }
    EXPECT_GT(count, 0);
    for (int state = 1; state <= 8; ++state) {
        EXPECT_FALSE(theme::icon(QStringLiteral("state-%1").arg(state)).isNull()) << state;
    }
}

TEST(Theme, ASelectedRowsIconIsInTheSelectionsColours) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Highlight, Qt::blue);
    palette.setColor(QPalette::HighlightedText, Qt::yellow);
    const PaletteOf other(Qt::white, Qt::black);
    QApplication::setPalette(palette);
    const QImage busy = drawn(theme::icon(QStringLiteral("state-5")), 48, QIcon::Selected);
    EXPECT_EQ(busy.pixelColor(24, 12), QColor(Qt::yellow));
    EXPECT_EQ(busy.pixelColor(24, 24), QColor(Qt::blue));
}

TEST(Theme, NewsCanBeReadOnAnyGround) {
    const auto lightness = [](const QColor& colour) { return qGray(colour.rgb()); };
    for (const auto& [accent, ground, text] :
         {std::tuple{Qt::white, Qt::white, Qt::black}, std::tuple{Qt::black, Qt::black, Qt::white}}) {
        QPalette palette;
        palette.setColor(QPalette::Highlight, accent);
        palette.setColor(QPalette::Base, ground);
        palette.setColor(QPalette::Text, text);
        EXPECT_GT(std::abs(lightness(theme::newsColor(palette)) - lightness(QColor(ground))), 80);
    }
}

TEST(TextNote, IsPlainAndBounded) {
    TextNote note;
    note.setNote(QStringLiteral("<b>one</b>\r\ntwo"));
    EXPECT_EQ(note.Note(), QStringLiteral("<b>one</b>\ntwo"));
    const int two = note.sizeHint().height();
    note.setNote(QString(300, QLatin1Char('W')));
    EXPECT_GT(note.sizeHint().height(), two) << "a word without end is broken";
    EXPECT_LT(note.sizeHint().width(), 1000);
    note.setNote(QString(1000 * 1000, QLatin1Char('\n')));
    EXPECT_LT(note.sizeHint().height(), 600);
    EXPECT_LE(note.Note().size(), TextNote::Longest + 1);
    EXPECT_EQ(note.focusPolicy(), Qt::StrongFocus) << "what scrolls is reached by keyboard";
}

}  // namespace talvora::test
