#include "report/lum_table.hh"

#include "platform/gen.hh"
#include "platform/msg.hh"
#include "rdb/rdb_object.hh"
#include "rdb/rdb_report.hh"
#include "report/lum_report_commands.hh"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QScrollBar>

#include <algorithm>
#include <fstream>
#include <set>

namespace {

// Rows measured when columns are fitted to their texts: enough to size the
// columns of any ordinary report, bounded so a huge table opens at once.
constexpr int FIT_SAMPLE_ROWS = 200;

const QPixmap& watermark_pixmap() {
  static const QPixmap pixmap = [] {
    QPixmap tile(180, 90);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QFont font = painter.font();
    font.setPointSize(11);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor(200, 200, 200, 150));
    painter.translate(90, 45);
    painter.rotate(-20);
    painter.drawText(QRect(-90, -20, 180, 40), Qt::AlignCenter, QStringLiteral("Out of date"));
    return tile;
  }();
  return pixmap;
}

}  // namespace

void lum_tile_out_of_date_watermark(QPainter* painter, const QRect& rect) {
  const QPixmap& tile = watermark_pixmap();
  const QRect area = rect.normalized();
  const int step_x = std::max(1, tile.width());
  const int step_y = std::max(1, tile.height());
  for (int x = area.left(); x <= area.right(); x += step_x) {
    for (int y = area.top(); y <= area.bottom(); y += step_y) painter->drawPixmap(x, y, tile);
  }
}

std::string lum_compose_copy_text(const std::vector<LUM_COPY_ROW>& rows) {
  std::string text;
  if (rows.empty()) return text;
  const LUM_COPY_ROW& first = rows.front();
  const size_t columns = first.cells.size();
  const bool whole_rows = columns > 1 && first.selected.size() == columns && first.selected.front() &&
                          first.selected.back();
  for (size_t r = 0; r < rows.size(); ++r) {
    if (r > 0) text += "\r\n";
    const LUM_COPY_ROW& row = rows[r];
    for (size_t c = 0; c < row.cells.size() && c < row.selected.size(); ++c) {
      if (!row.selected[c]) continue;
      text += row.cells[c];
      if (whole_rows && c + 1 < row.cells.size()) text += "\t";
    }
  }
  return text;
}

std::string lum_csv_record(const std::vector<std::string>& fields) {
  std::string record;
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) record += ',';
    const std::string& field = fields[i];
    if (field.find_first_of(",\"\r\n") == std::string::npos) {
      record += field;
      continue;
    }
    record += '"';
    for (char c : field) {
      if (c == '"') record += '"';
      record += c;
    }
    record += '"';
  }
  record += "\r\n";
  return record;
}

LUM_TABLE::LUM_TABLE(QWidget* parent) : QTableView(parent) {
  setModel(&m_model);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setSelectionBehavior(QAbstractItemView::SelectItems);
  setWordWrap(false);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  // Every row has the same height: the view then never measures rows, which
  // keeps a table of a million rows as quick as a small one.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  // A click on a column title sorts; it does not also select the column
  // (which would move the caret and take the view along after the sort).
  disconnect(horizontalHeader(), SIGNAL(sectionPressed(int)), this, SLOT(selectColumn(int)));
  disconnect(horizontalHeader(), SIGNAL(sectionEntered(int)), this, SLOT(_q_selectColumn(int)));
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &LUM_TABLE::on_sort);
  connect(&m_model, &LUM_TABLE_MODEL::sort_started, this, &LUM_TABLE::on_sort_started);
  connect(&m_model, &LUM_TABLE_MODEL::sort_finished, this, &LUM_TABLE::on_sort_finished);
  connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
    if (index.isValid()) open_row(index.row());
  });
}

LUM_TABLE::~LUM_TABLE() {
  set_busy_cursor(false);
  // The view lets go of the model before the model (a member) is destroyed.
  setModel(nullptr);
}

void LUM_TABLE::load_source(std::unique_ptr<LUM_TABLE_SOURCE> source, bool titled) {
  setUpdatesEnabled(false);
  m_titled = titled;
  m_tcl_table = nullptr;
  m_tcl_commands.clear();
  m_model.set_source(std::move(source));
  horizontalHeader()->setVisible(titled);
  verticalHeader()->setVisible(titled);
  setShowGrid(titled);
  horizontalHeader()->setSortIndicatorShown(false);
  fit_columns(0);
  setUpdatesEnabled(true);
}

bool LUM_TABLE::load_rdb_table(RDB_OBJECT* object) {
  auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(object);
  if (!MSG_ASSERT(table != nullptr, "lum_table")) return false;
  const bool headerless = table->get_type() == RDB_KIND_HEADERLESS_TABLE;
  load_source(std::make_unique<LUM_RDB_TABLE_SOURCE>(table), !headerless);
  if (headerless) {
    // A headerless table takes the window's colours and a little air per column.
    setFrameShape(QFrame::NoFrame);
    widen_all_columns(5);
  }
  if (table->get_type() == RDB_KIND_TCL_TABLE) {
    m_tcl_table = dynamic_cast<const RDB_TCL_TABLE_OBJECT*>(table);
    if (MSG_ASSERT(m_tcl_table != nullptr, "lum_table")) {
      for (int i = 0; i < m_tcl_table->get_number_of_cmds(); ++i)
        m_tcl_commands.push_back(LUM_TABLE_TCL_CMD{m_tcl_table->get_gui_cmd_name(i), i});
    }
  }
  return true;
}

bool LUM_TABLE::load_text_rows(const std::string& title, std::vector<RDB_TABLE_ROW> rows) {
  const bool has_rows = !rows.empty();
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  load_source(std::make_unique<LUM_MEMORY_TABLE_SOURCE>(std::vector<std::string>{title}, std::move(rows)), false);
  horizontalHeader()->setStretchLastSection(true);
  return has_rows;
}

bool LUM_TABLE::load_rdb_text(RDB_OBJECT* object) {
  auto* text_object = dynamic_cast<RDB_TEXT_OBJECT*>(object);
  if (!MSG_ASSERT(text_object != nullptr, "lum_table")) return false;
  std::vector<RDB_TABLE_ROW> rows;
  for (std::string& line : lum_split_text_rows(text_object->get_text())) rows.push_back(RDB_TABLE_ROW{{std::move(line)}, {}});
  return load_text_rows(object->get_name(), std::move(rows));
}

bool LUM_TABLE::load_rdb_embedded_text(RDB_OBJECT* object) {
  auto* embedded = dynamic_cast<RDB_EMBEDDED_OBJECT*>(object);
  if (!MSG_ASSERT(embedded != nullptr, "lum_table")) return false;
  std::vector<RDB_TABLE_ROW> rows;
  const std::string info = embedded->get_info_str();
  // The info string names a file: as it stands, else found beside the report database.
  std::string file = info;
  if (!info.empty() && info.front() != '/' && embedded->get_report()) {
    const std::string database = embedded->get_report()->get_file();
    const size_t slash = database.find_last_of('/');
    const std::string dir = slash == std::string::npos ? std::string(".") : database.substr(0, slash);
    const std::string found = gen_find_file(info, {dir, dir + "/.."});
    if (!found.empty()) file = found;
  }
  std::ifstream in(file);
  std::string line;
  while (in && std::getline(in, line)) {
    std::string row;
    for (char c : line) row += c == '\t' ? std::string("    ") : std::string(1, c);
    rows.push_back(RDB_TABLE_ROW{{std::move(row)}, {}});
  }
  return load_text_rows(object->get_name(), std::move(rows));
}

void LUM_TABLE::fit_columns(int extra_pixels) {
  const QFontMetrics metrics(font());
  const QFontMetrics header_metrics(horizontalHeader()->font());
  const int columns = m_model.columnCount();
  const int rows = std::min(m_model.rowCount(), FIT_SAMPLE_ROWS);
  const int padding = 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 12;
  for (int c = 0; c < columns; ++c) {
    int width = m_titled ? header_metrics.horizontalAdvance(m_model.headerData(c, Qt::Horizontal).toString()) + 24 : 0;
    for (int r = 0; r < rows; ++r)
      width = std::max(width, metrics.horizontalAdvance(QString::fromStdString(m_model.cell_text(r, c))) + padding);
    setColumnWidth(c, std::max(width, 40) + extra_pixels);
  }
  if (m_titled) {
    verticalHeader()->setMinimumWidth(
        header_metrics.horizontalAdvance(QString::number(std::max(1, m_model.rowCount()))) + 16);
  }
}

void LUM_TABLE::widen_all_columns(int pixels) {
  for (int c = 0; c < m_model.columnCount(); ++c) setColumnWidth(c, columnWidth(c) + pixels);
}

QSize LUM_TABLE::get_ideal_size() const {
  if (m_model.rowCount() == 0) return QSize();
  int width = 2 * frameWidth();
  for (int c = 0; c < m_model.columnCount(); ++c) width += columnWidth(c);
  // Rows beyond what any screen shows need not be counted exactly.
  const int64_t rows = std::min(m_model.rowCount(), 100000);
  const int64_t body = rows * verticalHeader()->defaultSectionSize();
  int height = 2 * frameWidth() + static_cast<int>(std::min<int64_t>(body, 1 << 24));
  // The headers' hints, not their sizes: they have none before they are first shown.
  if (!verticalHeader()->isHidden())
    width += std::max(verticalHeader()->sizeHint().width(), verticalHeader()->minimumWidth());
  if (!horizontalHeader()->isHidden()) height += horizontalHeader()->sizeHint().height();
  return QSize(width, height);
}

void LUM_TABLE::set_out_of_date(bool out_of_date) {
  m_out_of_date = out_of_date;
  viewport()->update();
  if (parentWidget()) parentWidget()->update();
}

void LUM_TABLE::paintEvent(QPaintEvent* event) {
  if (m_out_of_date) {
    QPainter painter(viewport());
    lum_tile_out_of_date_watermark(&painter, viewport()->rect());
  }
  QTableView::paintEvent(event);
}

void LUM_TABLE::on_sort(int column) {
  if (!m_titled || column < 0 || column >= m_model.columnCount()) return;
  // While a sort runs, the direction is decided against the sort asked for last.
  const int sorted = m_model.get_requested_column();
  const bool ascending = column != sorted ? true : !m_model.is_requested_ascending();
  m_model.sort_column(column, ascending);
}

void LUM_TABLE::set_busy_cursor(bool busy) {
  if (busy == m_busy_cursor) return;
  m_busy_cursor = busy;
  if (busy)
    QApplication::setOverrideCursor(Qt::BusyCursor);
  else
    QApplication::restoreOverrideCursor();
}

void LUM_TABLE::on_sort_started() { set_busy_cursor(true); }

void LUM_TABLE::on_sort_finished() {
  set_busy_cursor(false);
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setSortIndicator(m_model.get_sort_column(),
                                       m_model.is_ascending() ? Qt::AscendingOrder : Qt::DescendingOrder);
  // The caret followed its row through the layout change. A row the person
  // chose (it is selected) is brought into view; a caret that only rests
  // where the view put it would drag the view to wherever its row went, so
  // the view shows the first rows instead.
  if (currentIndex().isValid() && selectionModel()->isSelected(currentIndex()))
    scrollTo(currentIndex());
  else
    scrollToTop();
}

void LUM_TABLE::undo_sort() {
  set_busy_cursor(false);
  m_model.undo_sort();
  horizontalHeader()->setSortIndicatorShown(false);
  clearSelection();
  if (m_model.rowCount() > 0) setCurrentIndex(m_model.index(0, 0));
  clearSelection();
  scrollToTop();
}

std::vector<int> LUM_TABLE::selected_rows() const {
  std::vector<int> rows;
  std::set<int> seen;
  if (!selectionModel()) return rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int r = range.top(); r <= range.bottom(); ++r) {
      if (seen.insert(r).second) rows.push_back(r);
    }
  }
  return rows;
}

std::string LUM_TABLE::copy_text() const {
  std::vector<LUM_COPY_ROW> copy_rows;
  const QItemSelectionModel* selection = selectionModel();
  if (!selection) return std::string();
  const QHeaderView* header = horizontalHeader();
  const int columns = m_model.columnCount();
  for (int row : selected_rows()) {
    LUM_COPY_ROW copy_row;
    for (int visual = 0; visual < columns; ++visual) {
      const int column = header->logicalIndex(visual);
      copy_row.cells.push_back(m_model.cell_text(row, column));
      copy_row.selected.push_back(selection->isSelected(m_model.index(row, column)));
    }
    copy_rows.push_back(std::move(copy_row));
  }
  return lum_compose_copy_text(copy_rows);
}

void LUM_TABLE::on_edit_copy() {
  const std::string text = copy_text();
  if (selected_rows().empty()) return;
  QApplication::clipboard()->setText(QString::fromStdString(text));
}

void LUM_TABLE::on_edit_select_all() {
  if (selectionMode() == QAbstractItemView::ExtendedSelection || selectionMode() == QAbstractItemView::MultiSelection)
    selectAll();
}

bool LUM_TABLE::export_csv(const QString& path, QString* error) const {
  std::ofstream out(path.toStdString(), std::ios::binary | std::ios::trunc);
  if (!out) {
    if (error) *error = QStringLiteral("Cannot write the file %1.").arg(path);
    return false;
  }
  const QHeaderView* header = horizontalHeader();
  const int columns = m_model.columnCount();
  std::vector<std::string> fields(static_cast<size_t>(columns));
  if (m_titled) {
    for (int visual = 0; visual < columns; ++visual)
      fields[visual] = m_model.headerData(header->logicalIndex(visual), Qt::Horizontal).toString().toStdString();
    out << lum_csv_record(fields);
  }
  for (int row = 0; row < m_model.rowCount(); ++row) {
    for (int visual = 0; visual < columns; ++visual) fields[visual] = m_model.cell_text(row, header->logicalIndex(visual));
    out << lum_csv_record(fields);
  }
  out.flush();
  if (!out) {
    if (error) *error = QStringLiteral("Writing the file %1 failed.").arg(path);
    return false;
  }
  return true;
}

void LUM_TABLE::export_csv_interactive() {
  const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Export Table as CSV"), QString(),
                                                    QStringLiteral("CSV Files (*.csv);;All Files (*)"));
  if (path.isEmpty()) return;
  QString error;
  if (!export_csv(path, &error)) QMessageBox::warning(this, QStringLiteral("Export Table as CSV"), error);
}

std::vector<std::string> LUM_TABLE::commands_for_selection(int command) const {
  std::vector<std::string> lines;
  if (!m_tcl_table || command < 0 || command >= static_cast<int>(m_tcl_commands.size())) return lines;
  const int template_index = m_tcl_commands[command].index;
  for (int row : selected_rows()) {
    const int64_t database_row = m_model.get_source() ? m_model.get_source()->database_row(m_model.source_row(row)) : -1;
    if (database_row < 0) continue;
    lines.push_back(m_tcl_table->build_cmd(template_index, static_cast<int>(database_row)));
  }
  return lines;
}

void LUM_TABLE::run_command(const std::string& command) { lum_report_run_command(command); }

void LUM_TABLE::set_row_opener(const QString& label, ROW_OPENER opener) {
  m_row_opener_label = label;
  m_row_opener = std::move(opener);
}

bool LUM_TABLE::open_row(int view_row) {
  if (!m_row_opener || !m_model.get_source()) return false;
  const int64_t source_row = m_model.source_row(view_row);
  if (source_row < 0) return false;
  m_row_opener(m_model.get_source()->database_row(source_row));
  return true;
}

QMenu* LUM_TABLE::create_context_menu() {
  auto* menu = new QMenu(this);
  if (m_row_opener) {
    const std::vector<int> rows = selected_rows();
    const int row = currentIndex().isValid() ? currentIndex().row() : (rows.empty() ? -1 : rows.front());
    QAction* open = menu->addAction(m_row_opener_label, this, [this, row] { open_row(row); });
    open->setObjectName(QStringLiteral("open_row"));
    open->setEnabled(row >= 0);
    menu->setDefaultAction(open);
    menu->addSeparator();
  }
  QAction* copy = menu->addAction(QStringLiteral("&Copy"), this, &LUM_TABLE::on_edit_copy);
  copy->setShortcut(QKeySequence::Copy);
  copy->setObjectName(QStringLiteral("copy"));
  QAction* undo = menu->addAction(QStringLiteral("&Undo Sort"), this, &LUM_TABLE::undo_sort);
  undo->setObjectName(QStringLiteral("undo_sort"));
  undo->setEnabled(m_model.get_sort_column() != -1 || m_model.is_sorting());
  QAction* select_all = menu->addAction(QStringLiteral("Select &All"), this, &LUM_TABLE::on_edit_select_all);
  select_all->setShortcut(QKeySequence::SelectAll);
  select_all->setObjectName(QStringLiteral("select_all"));
  select_all->setEnabled(selectionMode() == QAbstractItemView::ExtendedSelection ||
                         selectionMode() == QAbstractItemView::MultiSelection);
  QAction* csv = menu->addAction(QStringLiteral("&Export Table as CSV..."), this, &LUM_TABLE::export_csv_interactive);
  csv->setObjectName(QStringLiteral("export_csv"));
  if (!m_tcl_commands.empty()) {
    menu->addSeparator();
    const bool netlist = lum_report_netlist_is_created() == '1';
    const int count = std::min<int>(MAX_MENU_COMMANDS, static_cast<int>(m_tcl_commands.size()));
    for (int i = 0; i < count; ++i) {
      QAction* action = menu->addAction(QString::fromStdString(m_tcl_commands[i].label));
      action->setObjectName(QStringLiteral("tcl_command_%1").arg(i));
      action->setEnabled(netlist);
      connect(action, &QAction::triggered, this, [this, i] {
        // The commands come from the report database: only literal report commands run.
        for (const std::string& line : commands_for_selection(i)) lum_report_run_stored_command(line);
      });
    }
  }
  return menu;
}

void LUM_TABLE::contextMenuEvent(QContextMenuEvent* event) {
  const QModelIndex hit = indexAt(viewport()->mapFromGlobal(event->globalPos()));
  if (!hit.isValid() || selected_rows().empty()) return;
  QMenu* menu = create_context_menu();
  menu->exec(event->globalPos());
  delete menu;
}

void LUM_TABLE::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    on_edit_copy();
    return;
  }
  QTableView::keyPressEvent(event);
}

LUM_CENTERED_TABLE::LUM_CENTERED_TABLE(QWidget* parent) : QWidget(parent), m_table(new LUM_TABLE(this)) {}

void LUM_CENTERED_TABLE::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  relayout();
}

void LUM_CENTERED_TABLE::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  relayout();
}

void LUM_CENTERED_TABLE::relayout() {
  QSize size = m_table->get_ideal_size();
  // Room for the scroll bar that a clipped table shows.
  const int scroll_bar = m_table->verticalScrollBar()->sizeHint().width();
  if (size.height() > height()) size.setWidth(size.width() + scroll_bar);
  if (size.width() > width()) size.setHeight(size.height() + scroll_bar);
  size = size.boundedTo(this->size());
  if (size.isEmpty()) size = this->size();
  m_table->setGeometry((width() - size.width()) / 2, (height() - size.height()) / 2, size.width(), size.height());
}

void LUM_CENTERED_TABLE::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  if (m_table->is_out_of_date()) {
    QPainter painter(this);
    lum_tile_out_of_date_watermark(&painter, rect());
  }
}
