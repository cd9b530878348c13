#include "frame/lum_frame_icons.hh"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <functional>
#include <map>

#include "frame/lum_frame_commands.hh"

namespace {

// Every icon is drawn on a 16 x 16 design grid and rendered at several sizes.
using DRAW = std::function<void(QPainter&)>;

QIcon render(const DRAW& draw) {
  QIcon icon;
  for (int size : {16, 20, 24, 32, 48, 64}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 16.0, size / 16.0);
    draw(p);
    p.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

QPen pen(const QColor& colour, double width = 1.2) {
  return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

const QColor kInk(0x33, 0x3d, 0x4a);
const QColor kBlue(0x2f, 0x6f, 0xc1);
const QColor kGreen(0x2e, 0x9b, 0x4f);
const QColor kRed(0xd0, 0x3b, 0x32);
const QColor kAmber(0xe8, 0xa3, 0x17);
const QColor kOrange(0xe0, 0x6c, 0x1c);
const QColor kPaper(0xfb, 0xfb, 0xf8);
const QColor kFolder(0xf2, 0xc3, 0x5b);

void round_badge(QPainter& p, const QColor& fill, const QString& glyph) {
  p.setPen(pen(fill.darker(130), 0.8));
  p.setBrush(fill);
  p.drawEllipse(QRectF(1, 1, 14, 14));
  QFont f = p.font();
  f.setBold(true);
  f.setPixelSize(11);
  p.setFont(f);
  p.setPen(Qt::white);
  p.drawText(QRectF(1, 1, 14, 14), Qt::AlignCenter, glyph);
}

void triangle_badge(QPainter& p, const QColor& fill, const QColor& glyph_colour) {
  QPainterPath path;
  path.moveTo(8, 1.2);
  path.lineTo(15.2, 14.6);
  path.lineTo(0.8, 14.6);
  path.closeSubpath();
  p.setPen(pen(fill.darker(135), 0.8));
  p.setBrush(fill);
  p.drawPath(path);
  p.setPen(pen(glyph_colour, 1.8));
  p.drawLine(QPointF(8, 5.5), QPointF(8, 10));
  p.drawPoint(QPointF(8, 12.6));
}

void page(QPainter& p, const QColor& fill = kPaper) {
  QPainterPath path;
  path.moveTo(3, 1);
  path.lineTo(10, 1);
  path.lineTo(13, 4);
  path.lineTo(13, 15);
  path.lineTo(3, 15);
  path.closeSubpath();
  p.setPen(pen(kInk, 0.9));
  p.setBrush(fill);
  p.drawPath(path);
  p.drawLine(QPointF(10, 1), QPointF(10, 4));
  p.drawLine(QPointF(10, 4), QPointF(13, 4));
}

// A small waveform: the analyzer's emblem.
void waveform(QPainter& p, const QColor& colour, double y0, double y1, double width = 1.4) {
  QPainterPath w;
  w.moveTo(1.5, y1);
  w.lineTo(4, y1);
  w.lineTo(4, y0);
  w.lineTo(8, y0);
  w.lineTo(8, y1);
  w.lineTo(12, y1);
  w.lineTo(12, y0);
  w.lineTo(14.5, y0);
  p.setPen(pen(colour, width));
  p.setBrush(Qt::NoBrush);
  p.drawPath(w);
}

void arrow(QPainter& p, QPointF from, QPointF to, const QColor& colour) {
  p.setPen(pen(colour, 1.6));
  p.drawLine(from, to);
  QLineF line(to, from);
  QLineF a = line;
  a.setLength(3.5);
  a.setAngle(line.angle() + 35);
  QLineF b = line;
  b.setLength(3.5);
  b.setAngle(line.angle() - 35);
  p.drawLine(a);
  p.drawLine(b);
}

void netlist(QPainter& p) {
  p.setPen(pen(kInk, 1.0));
  p.setBrush(QColor(0xd9, 0xe6, 0xf7));
  p.drawRect(QRectF(1.5, 2, 5, 4));
  p.drawRect(QRectF(9.5, 2, 5, 4));
  p.drawRect(QRectF(5.5, 10, 5, 4));
  p.setBrush(Qt::NoBrush);
  p.drawLine(QPointF(4, 6), QPointF(4, 8));
  p.drawLine(QPointF(4, 8), QPointF(8, 8));
  p.drawLine(QPointF(12, 6), QPointF(12, 8));
  p.drawLine(QPointF(12, 8), QPointF(8, 8));
  p.drawLine(QPointF(8, 8), QPointF(8, 10));
}

void sdc_page(QPainter& p) {
  page(p);
  p.setPen(pen(kBlue, 0.9));
  for (double y : {6.0, 8.5, 11.0}) p.drawLine(QPointF(5, y), QPointF(11, y));
}

DRAW drawer(LUM_ICON which) {
  switch (which) {
    case LUM_ICON::APPLICATION:
      return [](QPainter& p) {
        p.setPen(pen(QColor(0x1d, 0x4f, 0x91), 0.8));
        p.setBrush(QColor(0x24, 0x5f, 0xa8));
        p.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 3, 3);
        waveform(p, QColor(0xff, 0xff, 0xff), 4.5, 11, 1.5);
        p.setPen(pen(kAmber, 1.1));
        p.drawLine(QPointF(8, 2.5), QPointF(8, 13.5));
      };
    case LUM_ICON::OPEN_PROJECT:
      return [](QPainter& p) {
        p.setPen(pen(QColor(0xa8, 0x7a, 0x1c), 0.9));
        p.setBrush(kFolder);
        QPainterPath back;
        back.moveTo(1, 3);
        back.lineTo(6, 3);
        back.lineTo(7.5, 4.5);
        back.lineTo(14, 4.5);
        back.lineTo(14, 13.5);
        back.lineTo(1, 13.5);
        back.closeSubpath();
        p.drawPath(back);
        p.setBrush(kFolder.lighter(115));
        QPainterPath front;
        front.moveTo(1, 13.5);
        front.lineTo(3.5, 7);
        front.lineTo(15.5, 7);
        front.lineTo(14, 13.5);
        front.closeSubpath();
        p.drawPath(front);
      };
    case LUM_ICON::CLOSE_PROJECT:
      return [](QPainter& p) {
        p.setPen(pen(QColor(0xa8, 0x7a, 0x1c), 0.9));
        p.setBrush(kFolder);
        p.drawRect(QRectF(1, 4, 12, 9.5));
        p.setPen(pen(kRed, 1.8));
        p.drawLine(QPointF(9.5, 8.5), QPointF(14.5, 13.5));
        p.drawLine(QPointF(14.5, 8.5), QPointF(9.5, 13.5));
      };
    case LUM_ICON::RUN_SCRIPT:
      return [](QPainter& p) {
        page(p);
        QPainterPath play;
        play.moveTo(6, 6);
        play.lineTo(11, 9);
        play.lineTo(6, 12);
        play.closeSubpath();
        p.setPen(Qt::NoPen);
        p.setBrush(kGreen);
        p.drawPath(play);
      };
    case LUM_ICON::CREATE_NETLIST:
      return [](QPainter& p) {
        netlist(p);
        p.setPen(pen(kGreen, 1.8));
        p.drawLine(QPointF(13, 9.5), QPointF(13, 15));
        p.drawLine(QPointF(10.2, 12.3), QPointF(15.8, 12.3));
      };
    case LUM_ICON::UPDATE_NETLIST:
      return [](QPainter& p) {
        netlist(p);
        p.setPen(pen(kBlue, 1.5));
        p.setBrush(Qt::NoBrush);
        p.drawArc(QRectF(10.5, 9.5, 5, 5), 60 * 16, 270 * 16);
        p.drawLine(QPointF(14.8, 9.2), QPointF(14.6, 11.2));
      };
    case LUM_ICON::DELETE_NETLIST:
      return [](QPainter& p) {
        netlist(p);
        p.setPen(pen(kRed, 1.8));
        p.drawLine(QPointF(10.5, 10), QPointF(15, 14.5));
        p.drawLine(QPointF(15, 10), QPointF(10.5, 14.5));
      };
    case LUM_ICON::READ_SDC:
      return [](QPainter& p) {
        sdc_page(p);
        arrow(p, QPointF(15.5, 12.5), QPointF(8.5, 12.5), kGreen);
      };
    case LUM_ICON::WRITE_SDC:
      return [](QPainter& p) {
        sdc_page(p);
        arrow(p, QPointF(7, 12.5), QPointF(14.5, 12.5), kBlue);
      };
    case LUM_ICON::CLOCK:
      return [](QPainter& p) {
        p.setPen(pen(kInk, 1.0));
        p.setBrush(kPaper);
        p.drawEllipse(QRectF(1.5, 1.5, 13, 13));
        p.setPen(pen(kBlue, 1.5));
        p.drawLine(QPointF(8, 8), QPointF(8, 4));
        p.drawLine(QPointF(8, 8), QPointF(11, 9.5));
      };
    case LUM_ICON::REPORT:
      return [](QPainter& p) {
        page(p);
        p.setPen(Qt::NoPen);
        p.setBrush(kBlue);
        p.drawRect(QRectF(5, 10, 1.6, 3));
        p.setBrush(kGreen);
        p.drawRect(QRectF(7.4, 7, 1.6, 6));
        p.setBrush(kOrange);
        p.drawRect(QRectF(9.8, 8.5, 1.6, 4.5));
      };
    case LUM_ICON::REPORT_TIMING:
      return [](QPainter& p) {
        page(p);
        waveform(p, kBlue, 6.5, 11.5, 1.2);
      };
    case LUM_ICON::FIND:
      return [](QPainter& p) {
        p.setPen(pen(kInk, 1.6));
        p.setBrush(QColor(0xe6, 0xf0, 0xfb));
        p.drawEllipse(QRectF(1.5, 1.5, 9, 9));
        p.setPen(pen(kInk, 2.2));
        p.drawLine(QPointF(9.5, 9.5), QPointF(14.5, 14.5));
      };
    case LUM_ICON::EXIT:
      return [](QPainter& p) {
        p.setPen(pen(kInk, 1.0));
        p.setBrush(QColor(0xe9, 0xe4, 0xda));
        p.drawRect(QRectF(2, 1.5, 8, 13));
        arrow(p, QPointF(6.5, 8), QPointF(15, 8), kRed);
      };
    case LUM_ICON::ABOUT:
      return [](QPainter& p) { round_badge(p, kBlue, "i"); };
    case LUM_ICON::PROMPT:
      return [](QPainter& p) {
        p.setPen(pen(kGreen.darker(115), 2.0));
        p.drawLine(QPointF(4, 4), QPointF(9, 8));
        p.drawLine(QPointF(9, 8), QPointF(4, 12));
      };
    case LUM_ICON::CONTINUATION_PROMPT:
      return [](QPainter& p) {
        p.setPen(pen(kGreen.darker(115), 1.6));
        p.drawLine(QPointF(2.5, 4.5), QPointF(6.5, 8));
        p.drawLine(QPointF(6.5, 8), QPointF(2.5, 11.5));
        p.drawLine(QPointF(8.5, 4.5), QPointF(12.5, 8));
        p.drawLine(QPointF(12.5, 8), QPointF(8.5, 11.5));
      };
    case LUM_ICON::TEXT_LINE:
      return [](QPainter& p) {
        p.setPen(pen(QColor(0x9a, 0xa3, 0xad), 1.2));
        p.drawLine(QPointF(4, 8), QPointF(12, 8));
      };
  }
  return [](QPainter&) {};
}

}  // namespace

QIcon lum_icon(LUM_ICON which) {
  static std::map<LUM_ICON, QIcon> cache;
  auto it = cache.find(which);
  if (it == cache.end()) it = cache.emplace(which, render(drawer(which))).first;
  return it->second;
}

QIcon lum_message_icon(MSG_KIND kind) {
  static std::map<MSG_KIND, QIcon> cache;
  auto it = cache.find(kind);
  if (it != cache.end()) return it->second;
  DRAW draw;
  switch (kind) {
    case MSG_KIND::INFO:
      draw = [](QPainter& p) { round_badge(p, kBlue, "i"); };
      break;
    case MSG_KIND::EXTRA_INFO:
      draw = [](QPainter& p) {
        p.setPen(pen(kBlue, 0.9));
        p.setBrush(QColor(0xe6, 0xf0, 0xfb));
        p.drawEllipse(QRectF(3, 3, 10, 10));
        p.setPen(pen(kBlue, 1.4));
        p.drawPoint(QPointF(8, 5.8));
        p.drawLine(QPointF(8, 7.6), QPointF(8, 10.6));
      };
      break;
    case MSG_KIND::WARNING:
      draw = [](QPainter& p) { triangle_badge(p, kAmber, kInk); };
      break;
    case MSG_KIND::CRITICAL_WARNING:
      draw = [](QPainter& p) { triangle_badge(p, kOrange, Qt::white); };
      break;
    case MSG_KIND::ERROR:
      draw = [](QPainter& p) {
        round_badge(p, kRed, "");
        p.setPen(pen(Qt::white, 1.8));
        p.drawLine(QPointF(5.5, 5.5), QPointF(10.5, 10.5));
        p.drawLine(QPointF(10.5, 5.5), QPointF(5.5, 10.5));
      };
      break;
    case MSG_KIND::INTERNAL_ERROR:
      draw = [](QPainter& p) {
        QPainterPath octagon;
        const double a = 4.6, b = 11.4;
        octagon.moveTo(a, 1);
        octagon.lineTo(b, 1);
        octagon.lineTo(15, a);
        octagon.lineTo(15, b);
        octagon.lineTo(b, 15);
        octagon.lineTo(a, 15);
        octagon.lineTo(1, b);
        octagon.lineTo(1, a);
        octagon.closeSubpath();
        p.setPen(pen(QColor(0x6b, 0x1a, 0x8f), 0.8));
        p.setBrush(QColor(0x8e, 0x2b, 0xb8));
        p.drawPath(octagon);
        p.setPen(pen(Qt::white, 1.8));
        p.drawLine(QPointF(8, 4.2), QPointF(8, 9.2));
        p.drawPoint(QPointF(8, 11.8));
      };
      break;
  }
  return cache.emplace(kind, render(draw)).first->second;
}

QIcon lum_command_icon(unsigned id) {
  switch (id) {
    case LUM_ID_FILE_OPEN_PROJECT: return lum_icon(LUM_ICON::OPEN_PROJECT);
    case LUM_ID_FILE_CLOSE_PROJECT: return lum_icon(LUM_ICON::CLOSE_PROJECT);
    case LUM_ID_RUN_TCL_SCRIPT: return lum_icon(LUM_ICON::RUN_SCRIPT);
    case LUM_ID_FILE_CLOSE: return lum_icon(LUM_ICON::EXIT);
    case LUM_ID_CREATE_TIMING_NETLIST: return lum_icon(LUM_ICON::CREATE_NETLIST);
    case LUM_ID_UPDATE_NETLIST: return lum_icon(LUM_ICON::UPDATE_NETLIST);
    case LUM_ID_DELETE_NETLIST: return lum_icon(LUM_ICON::DELETE_NETLIST);
    case LUM_ID_LOAD_SDC_FILE: return lum_icon(LUM_ICON::READ_SDC);
    case LUM_ID_WRITE_SDC_FILE: return lum_icon(LUM_ICON::WRITE_SDC);
    case LUM_ID_CREATE_CLOCK: return lum_icon(LUM_ICON::CLOCK);
    case LUM_ID_REPORT_SETUP_SUMMARY: return lum_icon(LUM_ICON::REPORT);
    case LUM_ID_REPORT_TIMING: return lum_icon(LUM_ICON::REPORT_TIMING);
    case LUM_ID_VIEW_NAME_FINDER: return lum_icon(LUM_ICON::FIND);
    case LUM_ID_APP_ABOUT: return lum_icon(LUM_ICON::ABOUT);
    default: return QIcon();
  }
}
