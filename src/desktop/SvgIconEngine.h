#pragma once
// An icon drawn from one of the theme's SVG files. `currentColor` in a drawing is the palette's text colour
// at the time of painting, and AccentColor its colour of news; other colours stand as they are, but in a
// selected row, where everything takes the colour of the selected text. A few finished pictures are kept in
// the toolkit's own bounded cache.

#include <QIconEngine>
#include <QString>

namespace talvora {

class SvgIconEngine final : public QIconEngine {
  public:
    explicit SvgIconEngine(QString file) : file_(std::move(file)) {}

    // As it stands in the drawings.
    static constexpr const char* AccentColor = "#3b82d6";

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override { return new SvgIconEngine(*this); }
    QString key() const override { return QStringLiteral("talvora-svg"); }
    bool isNull() override;

  private:
    QPixmap drawn(int side, QIcon::Mode mode) const;

    QString file_;
};

}  // namespace talvora
