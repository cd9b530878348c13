#include "charts/lum_chart_canvas.hh"

#include <QContextMenuEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QSvgGenerator>
#include <QToolTip>

namespace {

LUM_CHART_CANVAS::BACKGROUND_PAINTER& out_of_date_painter() {
  static LUM_CHART_CANVAS::BACKGROUND_PAINTER painter;
  return painter;
}

}  // namespace

LUM_CHART_CANVAS::LUM_CHART_CANVAS(QWidget* parent) : QWidget(parent), m_fonts(lum_chart_fonts(font())) {
  setMouseTracking(true);
  setMinimumSize(120, 90);
  setAutoFillBackground(false);
}

void LUM_CHART_CANVAS::set_out_of_date_painter(BACKGROUND_PAINTER painter) {
  out_of_date_painter() = std::move(painter);
}

void LUM_CHART_CANVAS::set_out_of_date(bool out_of_date) {
  m_out_of_date = out_of_date;
  update();
}

void LUM_CHART_CANVAS::relayout() {
  m_fonts = lum_chart_fonts(font());
  layout_chart(rect());
  m_hot = -1;
  update();
  emit laid_out();
}

void LUM_CHART_CANVAS::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  relayout();
}

void LUM_CHART_CANVAS::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().base());
  if (m_out_of_date && out_of_date_painter()) out_of_date_painter()(&painter, rect());
  paint_chart(&painter);
}

void LUM_CHART_CANVAS::mouseMoveEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  const int hot = hot_index_at(point);
  if (hot != m_hot) {
    m_hot = hot;
    update();
  }
  // The tooltip follows the shape under the mouse; the toolkit shows it
  // when the mouse rests, and a shown one changes with the shape.
  const QString text = tooltip_at(point);
  if (text != toolTip()) {
    setToolTip(text);
    if (QToolTip::isVisible()) {
      if (text.isEmpty())
        QToolTip::hideText();
      else
        QToolTip::showText(event->globalPosition().toPoint(), text, this);
    }
  }
  QWidget::mouseMoveEvent(event);
}

void LUM_CHART_CANVAS::leaveEvent(QEvent* event) {
  if (m_hot != -1) {
    m_hot = -1;
    update();
  }
  QWidget::leaveEvent(event);
}

bool LUM_CHART_CANVAS::save_image(const QString& file, QString* error) {
  const bool svg = QFileInfo(file).suffix().compare(QStringLiteral("svg"), Qt::CaseInsensitive) == 0;
  const QSize size = this->size().expandedTo(QSize(1, 1));
  const int saved_hot = m_hot;
  m_hot = -1;
  bool ok = false;
  if (svg) {
    QSvgGenerator generator;
    generator.setFileName(file);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setTitle(windowTitle());
    QPainter painter;
    if (painter.begin(&generator)) {
      painter.fillRect(QRect(QPoint(0, 0), size), Qt::white);
      paint_chart(&painter);
      ok = painter.end();
    }
    ok = ok && QFileInfo(file).size() > 0;
  } else {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::white);
    {
      QPainter painter(&image);
      paint_chart(&painter);
    }
    ok = image.save(file, "PNG");
  }
  m_hot = saved_hot;
  if (!ok && error) *error = QStringLiteral("Cannot write the file %1.").arg(file);
  return ok;
}

void LUM_CHART_CANVAS::save_interactive(const QString& title, const QString& filter, const QString& suffix) {
  QString file = QFileDialog::getSaveFileName(this, title, QString(), filter);
  if (file.isEmpty()) return;
  if (QFileInfo(file).suffix().isEmpty()) file += QStringLiteral(".") + suffix;
  QString error;
  if (!save_image(file, &error)) QMessageBox::warning(this, title, error);
}

QMenu* LUM_CHART_CANVAS::create_context_menu() {
  auto* menu = new QMenu(this);
  QAction* png = menu->addAction(QStringLiteral("Save as &PNG..."), this, [this] {
    save_interactive(QStringLiteral("Save Chart as PNG"), QStringLiteral("PNG Pictures (*.png)"), QStringLiteral("png"));
  });
  png->setObjectName(QStringLiteral("save_png"));
  QAction* svg = menu->addAction(QStringLiteral("Save as &SVG..."), this, [this] {
    save_interactive(QStringLiteral("Save Chart as SVG"), QStringLiteral("SVG Drawings (*.svg)"), QStringLiteral("svg"));
  });
  svg->setObjectName(QStringLiteral("save_svg"));
  return menu;
}

void LUM_CHART_CANVAS::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = create_context_menu();
  menu->exec(event->globalPos());
  delete menu;
}
