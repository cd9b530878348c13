#include "report/lum_path_wnd.hh"

#include "charts/lum_chart_wnd.hh"
#include "platform/msg.hh"
#include "rdb/rdb_object.hh"
#include "report/lum_table.hh"

#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// Pixels every column of the path tables gets beyond its text.
constexpr int kColumnAir = 15;
// Below each path table, so that its last row never touches the panel's edge.
constexpr int kPathTableAir = 7;

}  // namespace

// ---- LUM_PANEL_WND -----------------------------------------------------------------

LUM_PANEL_WND::LUM_PANEL_WND(const QString& caption, QWidget* parent) : QWidget(parent), m_caption(new QLabel(this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  m_caption->setObjectName(QStringLiteral("lum_panel_caption"));
  m_caption->setContentsMargins(6, 2, 6, 2);
  m_caption->setAutoFillBackground(true);
  QFont font = m_caption->font();
  font.setBold(true);
  m_caption->setFont(font);
  layout->addWidget(m_caption);
  set_caption(caption);
}

void LUM_PANEL_WND::set_child(QWidget* child) {
  m_child = child;
  child->setParent(this);
  static_cast<QVBoxLayout*>(layout())->addWidget(child, 1);
}

void LUM_PANEL_WND::set_caption(const QString& caption, bool violated) {
  m_red = violated;
  m_caption->setText(caption);
  QPalette palette = m_caption->palette();
  palette.setColor(QPalette::Window, palette.color(QPalette::Mid));
  palette.setColor(QPalette::WindowText, violated ? QColor(255, 0, 0) : palette.color(QPalette::BrightText));
  m_caption->setPalette(palette);
}

QString LUM_PANEL_WND::get_caption() const { return m_caption->text(); }

int LUM_PANEL_WND::caption_height() const { return m_caption->sizeHint().height(); }

void LUM_PANEL_WND::set_out_of_date(bool out_of_date) {
  m_out_of_date = out_of_date;
  update();
}

void LUM_PANEL_WND::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  if (m_out_of_date) {
    QPainter painter(this);
    lum_tile_out_of_date_watermark(&painter, rect());
  }
}

// ---- layout arithmetic ---------------------------------------------------------------

std::array<int, 3> lum_path_row_heights(int total, int summary, int arrival, int required) {
  total = std::max(0, total);
  summary = std::max(0, summary);
  arrival = std::max(0, arrival);
  required = std::max(0, required);
  const int top = std::min(summary, total * 2 / 3);
  const int rest = total - top;
  if (arrival + required <= rest) return {top, arrival, rest - arrival};
  const bool arrival_smaller = arrival <= required;
  const int smaller = std::min(arrival_smaller ? arrival : required, rest / 2);
  const int larger = rest - smaller;
  return arrival_smaller ? std::array<int, 3>{top, smaller, larger} : std::array<int, 3>{top, larger, smaller};
}

QString lum_path_slack_caption(double slack, bool violated) {
  QString text = QStringLiteral("SLACK: %1 ns").arg(slack, 0, 'f', 3);
  if (violated) text += QStringLiteral(" (VIOLATED)");
  return text;
}

// ---- LUM_PATH_WND ----------------------------------------------------------------------

LUM_PATH_WND::LUM_PATH_WND(QWidget* parent)
    : QWidget(parent),
      m_outer(new QSplitter(Qt::Vertical, this)),
      m_inner(new QSplitter(Qt::Horizontal, m_outer)),
      m_summary_table(new LUM_TABLE),
      m_summary_chart(new LUM_CHART_WND),
      m_data_arrival_table(new LUM_TABLE),
      m_data_required_table(new LUM_TABLE) {
  LUM_CHART_CANVAS::set_out_of_date_painter(lum_tile_out_of_date_watermark);
  auto* layout = new QVBoxLayout(this);
  // The splitter overlaps the window's edges by two pixels on every side.
  layout->setContentsMargins(-2, -2, -2, -2);
  layout->addWidget(m_outer);
  m_panels[SUMMARY] = new LUM_PANEL_WND(QStringLiteral("Path Summary"), m_inner);
  m_panels[CHART] = new LUM_PANEL_WND(QStringLiteral("Path Delay Stats"), m_inner);
  m_panels[ARRIVAL] = new LUM_PANEL_WND(QStringLiteral("Data Arrival Path"), m_outer);
  m_panels[REQUIRED] = new LUM_PANEL_WND(QStringLiteral("Data Required Path"), m_outer);
  m_panels[SUMMARY]->set_child(m_summary_table);
  m_panels[CHART]->set_child(m_summary_chart);
  m_panels[ARRIVAL]->set_child(m_data_arrival_table);
  m_panels[REQUIRED]->set_child(m_data_required_table);
  m_inner->addWidget(m_panels[SUMMARY]);
  m_inner->addWidget(m_panels[CHART]);
  m_outer->addWidget(m_inner);
  m_outer->addWidget(m_panels[ARRIVAL]);
  m_outer->addWidget(m_panels[REQUIRED]);
  m_outer->setChildrenCollapsible(false);
  m_inner->setChildrenCollapsible(false);
  for (LUM_PANEL_WND* panel : m_panels) panel->resize(200, 200);
  m_inner->setSizes({400, 200});
  m_outer->setSizes({210, 200, 200});
  m_inner->setStretchFactor(1, 1);
}

bool LUM_PATH_WND::load_rdb_path(const RDB_OBJECT* object) {
  auto* path_object = dynamic_cast<const RDB_PATH_OBJECT*>(object);
  if (!MSG_ASSERT(path_object != nullptr, "lum_path_wnd")) return false;
  auto load_table = [](LUM_TABLE* table, RDB_TABLE_OBJECT* source) {
    if (!source) return;
    table->load_rdb_table(source);
    table->horizontalHeader()->setStretchLastSection(true);
    table->widen_all_columns(kColumnAir);
  };
  load_table(m_summary_table, path_object->get_summary_table());
  m_panels[SUMMARY]->set_caption(lum_path_slack_caption(path_object->get_slack(), path_object->path_is_violated()),
                                 path_object->path_is_violated());
  if (RDB_CHART_TABLE_OBJECT* chart = path_object->get_delay_summary_chart()) m_summary_chart->load_rdb_chart(chart);
  load_table(m_data_arrival_table, path_object->get_data_arrival_table());
  load_table(m_data_required_table, path_object->get_data_required_table());
  balance_rows();
  return true;
}

void LUM_PATH_WND::set_out_of_date(bool out_of_date) {
  m_summary_table->set_out_of_date(out_of_date);
  m_summary_chart->set_out_of_date(out_of_date);
  m_data_arrival_table->set_out_of_date(out_of_date);
  m_data_required_table->set_out_of_date(out_of_date);
  for (LUM_PANEL_WND* panel : m_panels) panel->set_out_of_date(out_of_date);
}

int LUM_PATH_WND::wanted_height(const LUM_PANEL_WND* panel, const LUM_TABLE* table, int extra) const {
  int height = panel->caption_height() + 2 * table->frameWidth() + extra;
  if (!table->horizontalHeader()->isHidden()) height += table->horizontalHeader()->sizeHint().height();
  const int64_t rows = table->get_model()->rowCount();
  height += static_cast<int>(std::min<int64_t>(rows * table->verticalHeader()->defaultSectionSize(), 1 << 20));
  // Room for a horizontal scroll bar when the columns are wider than the panel.
  int columns = 0;
  for (int c = 0; c < table->get_model()->columnCount(); ++c) columns += table->columnWidth(c);
  if (columns > table->viewport()->width() && table->viewport()->width() > 0)
    height += table->horizontalScrollBar()->sizeHint().height();
  return height;
}

void LUM_PATH_WND::balance_rows() {
  const int total = m_outer->height() - 2 * m_outer->handleWidth();
  if (total <= 0) return;
  const std::array<int, 3> rows = lum_path_row_heights(
      total, wanted_height(m_panels[SUMMARY], m_summary_table, 0),
      wanted_height(m_panels[ARRIVAL], m_data_arrival_table, kPathTableAir),
      wanted_height(m_panels[REQUIRED], m_data_required_table, kPathTableAir));
  m_outer->setSizes({rows[0], rows[1], rows[2]});
}

void LUM_PATH_WND::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  balance_rows();
}

void LUM_PATH_WND::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  balance_rows();
}
