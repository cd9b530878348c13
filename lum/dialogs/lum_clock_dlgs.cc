#include "dialogs/lum_clock_dlgs.hh"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include "dialogs/lum_dialog_registry.hh"
#include "engine/lum_frame_iface.hh"

namespace {

// Text that is not a number reads as 0.
double number_or_zero(const std::string& text) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (end == text.c_str() || !std::isfinite(value)) return 0.0;
  return value;
}

double wrap(double time, double period) {
  double t = std::fmod(time, period);
  return t < 0 ? t + period : t;
}

}  // namespace

QPolygonF lum_clock_waveform_trace(double period, double rise, double fall, const QRectF& box) {
  const double high = box.top();
  const double low = box.bottom();
  QPolygonF trace;
  if (!(period > 0) || !std::isfinite(period)) {
    trace << QPointF(box.left(), low) << QPointF(box.right(), low);
    return trace;
  }
  const double r = wrap(rise, period);
  const double f = wrap(fall, period);
  auto x_of = [&](double t) { return box.left() + box.width() * t / period; };
  if (r == f) {
    trace << QPointF(box.left(), low) << QPointF(box.right(), low);
    return trace;
  }
  // High at time 0 exactly when the falling edge comes first.
  bool level_high = f < r;
  double y = level_high ? high : low;
  trace << QPointF(box.left(), y);
  for (double edge : {std::min(r, f), std::max(r, f)}) {
    trace << QPointF(x_of(edge), y);
    level_high = !level_high;
    y = level_high ? high : low;
    trace << QPointF(x_of(edge), y);
  }
  trace << QPointF(box.right(), y);
  return trace;
}

// ---- create clock ------------------------------------------------------------------

LUM_CREATE_CLOCK_WAVEFORM::LUM_CREATE_CLOCK_WAVEFORM(LUM_CREATE_CLOCK_DLG* dialog) : QWidget(dialog), m_dialog(dialog) {
  setObjectName("waveform");
  setMinimumHeight(50);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LUM_CREATE_CLOCK_WAVEFORM::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().base());
  const LUM_CREATE_CLOCK_FIELDS& fields = m_dialog->fields();
  const double period = number_or_zero(fields.period);
  double rise = number_or_zero(fields.rise);
  double fall = number_or_zero(fields.fall);
  // Without a waveform the clock rises at 0 and falls at half the period.
  if (fields.rise.empty() || fields.fall.empty()) {
    rise = 0;
    fall = period / 2;
  }
  const QRectF box = QRectF(rect()).adjusted(5, 5, -5, -5);
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setPen(QPen(palette().color(QPalette::Mid), 1, Qt::DotLine));
  painter.drawLine(box.bottomLeft(), box.bottomRight());
  painter.setPen(QPen(QColor(0x1f, 0x6f, 0xb5), 2));
  painter.drawPolyline(lum_clock_waveform_trace(period, rise, fall, box));
}

LUM_CREATE_CLOCK_DLG::LUM_CREATE_CLOCK_DLG(QWidget* parent) : LUM_DIALOG_BASE(parent, "Create Clock") {
  setObjectName("LUM_CREATE_CLOCK_DLG");
  add_edit("Clock &name:", &m_fields.name, "name");
  add_time_edit("&Period:", &m_fields.period, "period");
  add_time_edit("&Rising edge at:", &m_fields.rise, "rise");
  add_time_edit("&Falling edge at:", &m_fields.fall, "fall");
  m_preview = new LUM_CREATE_CLOCK_WAVEFORM(this);
  form()->addWidget(m_preview, take_row(), 1, 1, 2);
  add_name_edit("&Targets:", &m_fields.targets, "targets");
  add_check("&Add to the clocks already on the targets", &m_fields.add, "add");
  on_change();
}

void LUM_CREATE_CLOCK_DLG::after_compose() {
  if (m_preview) m_preview->update();
}

void LUM_CREATE_CLOCK_DLG::fill(const LUM_CLOCK_DLG_VALUES& values) {
  if (!values.name.empty()) m_fields.name = values.name;
  if (!values.period.empty()) m_fields.period = values.period;
  if (!values.rise.empty()) m_fields.rise = values.rise;
  if (!values.fall.empty()) m_fields.fall = values.fall;
  if (!values.source_objects.empty()) m_fields.targets = values.source_objects;
  write_back();
}

// ---- create generated clock -----------------------------------------------------------

LUM_CREATE_GENERATED_CLOCK_DLG::LUM_CREATE_GENERATED_CLOCK_DLG(QWidget* parent)
    : LUM_DIALOG_BASE(parent, "Create Generated Clock") {
  setObjectName("LUM_CREATE_GENERATED_CLOCK_DLG");
  add_edit("Clock &name:", &m_fields.name, "name");
  add_clock_combo("&Master clock:", &m_fields.master_clock, "master_clock");
  add_name_edit("&Source:", &m_fields.source, "source");
  add_choice("Derived by:", {"Divide / multiply", "Edges"}, &m_fields.mode, "mode");
  m_divide_controls.push_back(add_edit("&Divide by:", &m_fields.divide_by, "divide_by"));
  m_divide_controls.push_back(add_edit("M&ultiply by:", &m_fields.multiply_by, "multiply_by"));
  m_divide_controls.push_back(add_edit("D&uty cycle:", &m_fields.duty_cycle, "duty_cycle"));
  m_divide_controls.push_back(add_time_edit("P&hase:", &m_fields.phase, "phase"));
  m_divide_controls.push_back(add_time_edit("O&ffset:", &m_fields.offset, "offset"));

  // Edges and their shifts: three edits each on one row.
  auto edge_row = [this](const QString& label, std::string* fields, const char* stem) {
    auto* row_widget = new QWidget(this);
    auto* layout = new QHBoxLayout(row_widget);
    layout->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 3; ++i) {
      auto* edit = new QLineEdit(row_widget);
      edit->setObjectName(QString("%1%2").arg(stem).arg(i + 1));
      layout->addWidget(edit);
      bind_edit(edit, &fields[i]);
      m_edge_controls.push_back(edit);
    }
    const int row = take_row();
    form()->addWidget(new QLabel(label, this), row, 0);
    form()->addWidget(row_widget, row, 1);
  };
  edge_row("&Edges:", m_fields.edges, "edge");
  edge_row("Edge s&hifts:", m_fields.edge_shifts, "edge_shift");

  add_check("&Invert", &m_fields.invert, "invert");
  add_check("&Add to the clocks already on the targets", &m_fields.add, "add");
  add_name_edit("&Targets:", &m_fields.targets, "targets");
  on_change();
}

void LUM_CREATE_GENERATED_CLOCK_DLG::after_compose() {
  const bool edges = m_fields.mode == LUM_GENERATED_CLOCK_FIELDS::EDGES;
  for (QWidget* control : m_divide_controls) control->setEnabled(!edges);
  for (QWidget* control : m_edge_controls) control->setEnabled(edges);
}

void LUM_CREATE_GENERATED_CLOCK_DLG::fill(const LUM_GENERATED_CLOCK_DLG_VALUES& values) {
  if (!values.name.empty()) m_fields.name = values.name;
  if (!values.master_clock.empty()) m_fields.master_clock = values.master_clock;
  if (!values.source.empty()) m_fields.source = values.source;
  if (values.has_divide_by) m_fields.divide_by = std::to_string(values.divide_by);
  if (values.has_multiply_by) m_fields.multiply_by = std::to_string(values.multiply_by);
  if (!values.duty_cycle.empty()) m_fields.duty_cycle = values.duty_cycle;
  if (!values.phase.empty()) m_fields.phase = values.phase;
  if (!values.offset.empty()) m_fields.offset = values.offset;
  // An edge list chooses the edges mode; its words fill the three edges.
  auto split3 = [](const std::string& list, std::string* out) {
    std::istringstream words(list);
    for (int i = 0; i < 3 && (words >> out[i]); ++i) {
    }
  };
  if (!values.edge_list.empty()) {
    m_fields.mode = LUM_GENERATED_CLOCK_FIELDS::EDGES;
    split3(values.edge_list, m_fields.edges);
  }
  if (!values.edge_shift.empty()) split3(values.edge_shift, m_fields.edge_shifts);
  m_fields.invert = values.invert;
  if (!values.source_objects.empty()) m_fields.targets = values.source_objects;
  write_back();
}

// ---- remove clock ------------------------------------------------------------------

LUM_REMOVE_CLOCK_DLG::LUM_REMOVE_CLOCK_DLG(QWidget* parent) : LUM_DIALOG_BASE(parent, "Remove Clock") {
  setObjectName("LUM_REMOVE_CLOCK_DLG");
  add_clock_combo("Clock &name:", &m_fields.name, "name");
  on_change();
}

// ---- opening --------------------------------------------------------------------------

namespace {

template <typename DIALOG, typename VALUES>
void open_filled(QWidget* parent, const VALUES& values) {
  DIALOG dialog(parent);
  dialog.fill(values);
  const LUM_DIALOG_OUTCOME outcome = lum_run_dialog(dialog);
  if (outcome.accepted) lum_send_dialog_command(outcome.command);
}

template <typename DIALOG>
std::unique_ptr<LUM_DIALOG_BASE> make(QWidget* parent) {
  return std::make_unique<DIALOG>(parent);
}

const LUM_DIALOG_REGISTRATION create_clock{{"on_create_clock", "", make<LUM_CREATE_CLOCK_DLG>, nullptr}};
const LUM_DIALOG_REGISTRATION create_generated_clock{
    {"on_create_generated_clock", "", make<LUM_CREATE_GENERATED_CLOCK_DLG>, nullptr}};
const LUM_DIALOG_REGISTRATION remove_clock{{"on_remove_clock", "", make<LUM_REMOVE_CLOCK_DLG>, nullptr}};

}  // namespace

void lum_open_create_clock_dlg(QWidget* parent, const LUM_CLOCK_DLG_VALUES& values) {
  open_filled<LUM_CREATE_CLOCK_DLG>(parent, values);
}

void lum_open_create_generated_clock_dlg(QWidget* parent, const LUM_GENERATED_CLOCK_DLG_VALUES& values) {
  open_filled<LUM_CREATE_GENERATED_CLOCK_DLG>(parent, values);
}
