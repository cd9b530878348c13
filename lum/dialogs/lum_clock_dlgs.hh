// The clock dialogs: create clock (with its waveform preview), create
// generated clock and remove clock.
#pragma once

#include <QPolygonF>
#include <QRectF>
#include <QWidget>

#include "dialogs/lum_constraint_fields.hh"
#include "dialogs/lum_dialog_base.hh"

struct LUM_CLOCK_DLG_VALUES;
struct LUM_GENERATED_CLOCK_DLG_VALUES;
class QButtonGroup;

// The preview's trace: one period of a clock drawn into box, high between
// the rising and the falling edge (both taken modulo the period), low
// elsewhere; x runs with time, high is the box's top. A period that is not
// positive gives a flat low line.
QPolygonF lum_clock_waveform_trace(double period, double rise, double fall, const QRectF& box);

class LUM_CREATE_CLOCK_DLG;

class LUM_CREATE_CLOCK_WAVEFORM : public QWidget {
 public:
  explicit LUM_CREATE_CLOCK_WAVEFORM(LUM_CREATE_CLOCK_DLG* dialog);
  QSize sizeHint() const override { return QSize(360, 70); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  LUM_CREATE_CLOCK_DLG* m_dialog;
};

class LUM_CREATE_CLOCK_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_CREATE_CLOCK_DLG(QWidget* parent);
  LUM_CREATE_CLOCK_FIELDS& fields() { return m_fields; }
  // Copies the given (non-empty) values of "lum_edit_clock" over the defaults.
  void fill(const LUM_CLOCK_DLG_VALUES& values);

 protected:
  std::string compose() const override { return m_fields.compose(); }
  std::string refusal() const override { return m_fields.refusal(); }
  void after_compose() override;

 private:
  LUM_CREATE_CLOCK_FIELDS m_fields;
  LUM_CREATE_CLOCK_WAVEFORM* m_preview = nullptr;
};

class LUM_CREATE_GENERATED_CLOCK_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_CREATE_GENERATED_CLOCK_DLG(QWidget* parent);
  LUM_GENERATED_CLOCK_FIELDS& fields() { return m_fields; }
  void fill(const LUM_GENERATED_CLOCK_DLG_VALUES& values);

 protected:
  std::string compose() const override { return m_fields.compose(); }
  std::string refusal() const override { return m_fields.refusal(); }
  void after_compose() override;

 private:
  LUM_GENERATED_CLOCK_FIELDS m_fields;
  std::vector<QWidget*> m_divide_controls;
  std::vector<QWidget*> m_edge_controls;
};

class LUM_REMOVE_CLOCK_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_REMOVE_CLOCK_DLG(QWidget* parent);
  LUM_REMOVE_CLOCK_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }

 private:
  LUM_REMOVE_CLOCK_FIELDS m_fields;
};

// What the frame runs for "lum_edit_clock": the dialog filled with the
// values, shown, and its command sent on OK.
void lum_open_create_clock_dlg(QWidget* parent, const LUM_CLOCK_DLG_VALUES& values);
void lum_open_create_generated_clock_dlg(QWidget* parent, const LUM_GENERATED_CLOCK_DLG_VALUES& values);
