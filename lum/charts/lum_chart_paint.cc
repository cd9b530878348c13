#include "charts/lum_chart_paint.hh"

#include <QFontMetrics>
#include <QPainter>

#include <array>

LUM_CHART_FONTS lum_chart_fonts(const QFont& base) {
  LUM_CHART_FONTS fonts;
  fonts.label = base;
  fonts.title = base;
  fonts.title.setBold(true);
  return fonts;
}

LUM_TEXT_MEASURE lum_chart_measure(const LUM_CHART_FONTS& fonts) {
  const QFontMetrics title(fonts.title), label(fonts.label);
  return [title, label](LUM_CHART_FONT font, const QString& text) {
    const QFontMetrics& metrics = font == LUM_CHART_FONT::TITLE ? title : label;
    return QSize(metrics.horizontalAdvance(text), metrics.height());
  };
}

QColor lum_pie_color(int index) {
  static const std::array<QRgb, LUM_PIE_COLOR_COUNT> colors = {
      0x4e79a7, 0xf28e2b, 0x59a14f, 0xe15759, 0x76b7b2, 0xedc948, 0xb07aa1,
      0xff9da7, 0x9c755f, 0xbab0ac, 0x1f77b4, 0x8c564b, 0x17becf, 0xbcbd22};
  const int i = ((index % LUM_PIE_COLOR_COUNT) + LUM_PIE_COLOR_COUNT) % LUM_PIE_COLOR_COUNT;
  return QColor::fromRgb(colors[static_cast<size_t>(i)]);
}

QColor lum_bar_color(uint32_t color) {
  if (color == 0xffffffffu) return QColor(0x3b, 0x6e, 0xa8);
  return QColor::fromRgb(color & 0xffffffu);
}

namespace {

void draw_text(QPainter* painter, const LUM_CHART_TEXT& text) {
  painter->drawText(text.rect, text.align, text.text);
}

void draw_message(QPainter* painter, const QRect& area, const QString& message, const LUM_CHART_FONTS& fonts) {
  if (message.isEmpty()) return;
  painter->setFont(fonts.title);
  painter->setPen(QColor(0x70, 0x70, 0x70));
  painter->drawText(area.isEmpty() ? painter->window() : area, Qt::AlignCenter, message);
}

}  // namespace

void lum_paint_axis_chart(QPainter* painter, const LUM_AXIS_CHART_LAYOUT& layout, const LUM_CHART_FONTS& fonts,
                          int hot) {
  painter->save();
  const QColor ink(Qt::black);
  // Titles: the X-axis title under the scale, the Y-axis title written upwards.
  painter->setFont(fonts.title);
  painter->setPen(ink);
  painter->drawText(layout.x_title_rect, Qt::AlignHCenter | Qt::AlignVCenter, layout.x_title);
  if (!layout.y_title_rect.isEmpty()) {
    painter->save();
    const QRect& r = layout.y_title_rect;
    painter->translate(r.x(), r.y() + r.height());
    painter->rotate(-90);
    painter->drawText(QRect(0, 0, r.height(), r.width()), Qt::AlignHCenter | Qt::AlignVCenter, layout.y_title);
    painter->restore();
  }
  // Scales.
  painter->setFont(fonts.label);
  for (const LUM_CHART_TEXT& label : layout.y_labels) draw_text(painter, label);
  for (const LUM_CHART_TEXT& label : layout.x_labels) {
    if (label.rect.width() < 4) continue;
    LUM_CHART_TEXT shown = label;
    shown.text = QFontMetrics(fonts.label).elidedText(label.text, Qt::ElideRight, label.rect.width());
    draw_text(painter, shown);
  }
  // Bars, then the axes over their feet.
  const QRect& area = layout.bar_area;
  painter->setPen(Qt::NoPen);
  for (size_t i = 0; i < layout.bars.size(); ++i) {
    const LUM_CHART_BAR& bar = layout.bars[i];
    if (bar.rect.height() <= 0) continue;
    QColor color = lum_bar_color(bar.color);
    if (static_cast<int>(i) == hot) color = color.lighter(130);
    painter->fillRect(bar.rect, color);
  }
  painter->setPen(QPen(QColor(0x40, 0x40, 0x40), 1));
  if (!area.isEmpty()) {
    const int bottom = area.y() + area.height();
    painter->drawLine(area.x(), bottom, area.x() + area.width(), bottom);
    painter->drawLine(layout.y_scale_rect.x() + layout.y_scale_rect.width() - 1, area.y(),
                      layout.y_scale_rect.x() + layout.y_scale_rect.width() - 1, bottom);
  }
  draw_message(painter, area, layout.message, fonts);
  painter->restore();
}

void lum_paint_pie(QPainter* painter, const LUM_PIE_LAYOUT& layout, const LUM_CHART_FONTS& fonts, int hot) {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing, true);
  if (layout.radius > 0) {
    const QRect circle(layout.center.x() - layout.radius, layout.center.y() - layout.radius, 2 * layout.radius,
                       2 * layout.radius);
    painter->setPen(QPen(QColor(0x40, 0x40, 0x40), 1));
    painter->setBrush(Qt::NoBrush);
    painter->drawEllipse(circle);
    for (size_t i = 0; i < layout.slices.size(); ++i) {
      const LUM_PIE_SLICE& slice = layout.slices[i];
      const int span = slice.end_degrees - slice.start_degrees;
      if (span <= 0) continue;
      QColor color = lum_pie_color(slice.color_index);
      if (static_cast<int>(i) == hot) color = color.lighter(125);
      painter->setBrush(color);
      painter->setPen(QPen(Qt::white, 1));
      if (span >= 360)
        painter->drawEllipse(circle);
      else
        painter->drawPie(circle, slice.start_degrees * 16, span * 16);
    }
    if (!layout.message.isEmpty()) draw_message(painter, circle, layout.message, fonts);
  } else {
    draw_message(painter, QRect(), layout.message, fonts);
  }
  // Legend.
  painter->setRenderHint(QPainter::Antialiasing, false);
  painter->setPen(Qt::black);
  painter->setFont(fonts.title);
  if (!layout.legend_rect.isEmpty()) draw_text(painter, layout.legend_title);
  painter->setFont(fonts.label);
  const QFontMetrics metrics(fonts.label);
  for (const LUM_LEGEND_ENTRY& entry : layout.legend) {
    painter->fillRect(entry.swatch, lum_pie_color(entry.color_index));
    painter->setPen(QColor(0x40, 0x40, 0x40));
    painter->drawRect(entry.swatch.adjusted(0, 0, -1, -1));
    painter->setPen(Qt::black);
    LUM_CHART_TEXT shown = entry.text;
    shown.text = metrics.elidedText(entry.text.text, Qt::ElideRight, std::max(0, entry.text.rect.width()));
    draw_text(painter, shown);
  }
  if (layout.hidden_entries > 0 && !layout.legend.empty()) {
    const LUM_LEGEND_ENTRY& last = layout.legend.back();
    painter->drawText(QRect(last.swatch.x(), last.text.rect.y() + last.text.rect.height(), layout.legend_rect.width(),
                            metrics.height()),
                      Qt::AlignLeft | Qt::AlignTop, QStringLiteral("... %1 more").arg(layout.hidden_entries));
  }
  painter->restore();
}
