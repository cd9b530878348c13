#include "report/lum_report_icons.hh"

#include "platform/msg.hh"
#include "rdb/rdb_object.hh"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <array>

LUM_TOC_ICON lum_toc_icon_of(const RDB_OBJECT* object) {
  if (!object) return LUM_TOC_ICON_DEFAULT;
  switch (object->get_type()) {
    case RDB_KIND_FOLDER:
      return LUM_TOC_ICON_FOLDER;
    case RDB_KIND_TEXT: {
      auto* text_object = dynamic_cast<const RDB_TEXT_OBJECT*>(object);
      if (!MSG_ASSERT(text_object != nullptr, "lum_sta_report_toc_tree")) return LUM_TOC_ICON_DEFAULT;
      return text_object->is_html() ? LUM_TOC_ICON_HTML : LUM_TOC_ICON_TEXT;
    }
    case RDB_KIND_TABLE:
      return LUM_TOC_ICON_TABLE;
    case RDB_KIND_CHART_TABLE: {
      auto* chart_object = dynamic_cast<const RDB_CHART_TABLE_OBJECT*>(object);
      if (!MSG_ASSERT(chart_object != nullptr, "lum_sta_report_toc_tree")) return LUM_TOC_ICON_DEFAULT;
      switch (chart_object->get_default_chart_type()) {
        case 1: return LUM_TOC_ICON_BAR_CHART;
        case 2: return LUM_TOC_ICON_PIE_CHART;
        default: return LUM_TOC_ICON_DEFAULT;
      }
    }
    case RDB_KIND_EMBEDDED: {
      auto* embedded_object = dynamic_cast<const RDB_EMBEDDED_OBJECT*>(object);
      if (!MSG_ASSERT(embedded_object != nullptr, "lum_sta_report_toc_tree")) return LUM_TOC_ICON_DEFAULT;
      switch (embedded_object->get_embedded_type()) {
        case 5: return LUM_TOC_ICON_EMBEDDED_TEXT;
        case 9: return LUM_TOC_ICON_EMBEDDED_OBJECT;
        default: return LUM_TOC_ICON_DEFAULT;
      }
    }
    case RDB_KIND_HEADERLESS_TABLE:
      return LUM_TOC_ICON_HEADERLESS_TABLE;
    case RDB_KIND_DETAIL_TABLE:
    case RDB_KIND_TCL_TABLE:
      return LUM_TOC_ICON_DETAIL_TABLE;
    case RDB_KIND_HISTOGRAM:
      return LUM_TOC_ICON_HISTOGRAM;
    case RDB_KIND_PATH: {
      auto* path_object = dynamic_cast<const RDB_PATH_OBJECT*>(object);
      if (!MSG_ASSERT(path_object != nullptr, "lum_sta_report_toc_tree")) return LUM_TOC_ICON_DEFAULT;
      return LUM_TOC_ICON_PATH;
    }
    default:
      return LUM_TOC_ICON_DEFAULT;
  }
}

namespace {

void draw_page(QPainter& p) {
  p.setPen(QColor(90, 90, 90));
  p.setBrush(Qt::white);
  p.drawRect(3, 1, 10, 13);
}

void draw_grid(QPainter& p, const QColor& header, bool titled) {
  p.setPen(QColor(70, 90, 120));
  p.setBrush(Qt::white);
  p.drawRect(1, 2, 13, 11);
  if (titled) p.fillRect(2, 3, 12, 3, header);
  p.drawLine(1, 6, 14, 6);
  p.drawLine(1, 9, 14, 9);
  p.drawLine(6, 2, 6, 13);
}

QPixmap draw_icon(LUM_TOC_ICON icon) {
  QPixmap pixmap(16, 16);
  pixmap.fill(Qt::transparent);
  QPainter p(&pixmap);
  switch (icon) {
    case LUM_TOC_ICON_FOLDER:
      p.setPen(QColor(160, 120, 20));
      p.setBrush(QColor(250, 210, 90));
      p.drawRect(1, 4, 14, 10);
      p.drawRect(1, 2, 6, 2);
      break;
    case LUM_TOC_ICON_TEXT:
      draw_page(p);
      p.setPen(QColor(120, 120, 120));
      for (int y = 4; y <= 11; y += 2) p.drawLine(5, y, 11, y);
      break;
    case LUM_TOC_ICON_HTML:
      draw_page(p);
      p.setPen(QColor(30, 100, 200));
      p.drawText(QRect(3, 2, 11, 12), Qt::AlignCenter, QStringLiteral("<>"));
      break;
    case LUM_TOC_ICON_TABLE:
      draw_grid(p, QColor(120, 160, 220), true);
      break;
    case LUM_TOC_ICON_HEADERLESS_TABLE:
      draw_grid(p, QColor(), false);
      break;
    case LUM_TOC_ICON_DETAIL_TABLE:
      draw_grid(p, QColor(90, 170, 110), true);
      break;
    case LUM_TOC_ICON_BAR_CHART:
      p.fillRect(2, 8, 3, 6, QColor(60, 120, 200));
      p.fillRect(6, 4, 3, 10, QColor(200, 80, 60));
      p.fillRect(10, 6, 3, 8, QColor(80, 170, 80));
      p.setPen(Qt::black);
      p.drawLine(1, 14, 14, 14);
      break;
    case LUM_TOC_ICON_PIE_CHART:
      p.setRenderHint(QPainter::Antialiasing);
      p.setPen(Qt::NoPen);
      p.setBrush(QColor(60, 120, 200));
      p.drawPie(QRect(1, 1, 14, 14), 0, 250 * 16);
      p.setBrush(QColor(200, 80, 60));
      p.drawPie(QRect(1, 1, 14, 14), 250 * 16, 110 * 16);
      break;
    case LUM_TOC_ICON_EMBEDDED_TEXT:
      draw_page(p);
      p.setPen(QColor(120, 120, 120));
      for (int y = 4; y <= 11; y += 3) p.drawLine(5, y, 11, y);
      p.fillRect(9, 9, 5, 5, QColor(120, 80, 160));
      break;
    case LUM_TOC_ICON_EMBEDDED_OBJECT:
      p.setPen(QColor(90, 60, 140));
      p.setBrush(QColor(190, 170, 230));
      p.drawRect(2, 2, 11, 11);
      p.drawRect(5, 5, 5, 5);
      break;
    case LUM_TOC_ICON_HISTOGRAM:
      for (int i = 0; i < 6; ++i) {
        const int h = (i == 0 || i == 5) ? 3 : (i == 1 || i == 4) ? 7 : 11;
        p.fillRect(2 + 2 * i, 14 - h, 2, h, i < 2 ? QColor(210, 60, 60) : QColor(60, 150, 80));
      }
      break;
    case LUM_TOC_ICON_PATH:
      p.setRenderHint(QPainter::Antialiasing);
      p.setPen(QPen(QColor(40, 80, 160), 2));
      p.drawLine(2, 12, 7, 5);
      p.drawLine(7, 5, 13, 10);
      p.setBrush(QColor(40, 80, 160));
      p.drawEllipse(QPoint(2, 12), 1, 1);
      p.drawEllipse(QPoint(13, 10), 1, 1);
      break;
    case LUM_TOC_ICON_PLACEHOLDER:
      p.setRenderHint(QPainter::Antialiasing);
      p.setPen(QColor(120, 120, 120));
      p.setBrush(QColor(235, 235, 235));
      p.drawEllipse(QRect(1, 1, 13, 13));
      p.drawText(QRect(1, 1, 14, 14), Qt::AlignCenter, QStringLiteral("i"));
      break;
    case LUM_TOC_ICON_DEFAULT:
    case LUM_TOC_ICON_COUNT:
      p.setPen(QColor(110, 110, 110));
      p.setBrush(QColor(220, 220, 220));
      p.drawRect(2, 2, 11, 11);
      break;
  }
  return pixmap;
}

// The out-of-date marker: a small clock in the lower right corner.
void draw_out_of_date_marker(QPixmap* pixmap) {
  QPainter p(pixmap);
  p.setRenderHint(QPainter::Antialiasing);
  p.setPen(QColor(150, 60, 0));
  p.setBrush(QColor(255, 190, 60));
  p.drawEllipse(QRect(8, 8, 7, 7));
  p.drawLine(11, 9, 11, 11);
  p.drawLine(11, 11, 13, 11);
}

}  // namespace

QIcon lum_toc_icon(LUM_TOC_ICON icon, bool out_of_date) {
  static std::array<std::array<QIcon, 2>, LUM_TOC_ICON_COUNT> cache;
  if (icon < 0 || icon >= LUM_TOC_ICON_COUNT) icon = LUM_TOC_ICON_DEFAULT;
  QIcon& cached = cache[icon][out_of_date ? 1 : 0];
  if (cached.isNull()) {
    QPixmap pixmap = draw_icon(icon);
    if (out_of_date) draw_out_of_date_marker(&pixmap);
    cached = QIcon(pixmap);
  }
  return cached;
}
