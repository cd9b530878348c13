// The latency, uncertainty, delay and path-exception dialogs. Each keeps its
// fields struct (lum_constraint_fields.hh) and binds its controls to it.
#pragma once

#include "dialogs/lum_constraint_fields.hh"
#include "dialogs/lum_dialog_base.hh"

class QGroupBox;

class LUM_SET_CLOCK_LATENCY_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_SET_CLOCK_LATENCY_DLG(QWidget* parent);
  LUM_CLOCK_LATENCY_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }
  std::string refusal() const override { return m_fields.refusal(); }

 private:
  LUM_CLOCK_LATENCY_FIELDS m_fields;
};

class LUM_SET_CLOCK_UNCERTAINTY_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_SET_CLOCK_UNCERTAINTY_DLG(QWidget* parent);
  LUM_CLOCK_UNCERTAINTY_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }

 private:
  LUM_CLOCK_UNCERTAINTY_FIELDS m_fields;
};

// Input delay (input true) or output delay.
class LUM_SET_IO_DELAY_DLG : public LUM_DIALOG_BASE {
 public:
  LUM_SET_IO_DELAY_DLG(QWidget* parent, bool input);
  LUM_IO_DELAY_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }

 private:
  LUM_IO_DELAY_FIELDS m_fields;
};

// Minimum delay (minimum true) or maximum delay.
class LUM_SET_M_DELAY_DLG : public LUM_DIALOG_BASE {
 public:
  LUM_SET_M_DELAY_DLG(QWidget* parent, bool minimum);
  LUM_M_DELAY_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }

 private:
  LUM_M_DELAY_FIELDS m_fields;
};

class LUM_SET_FALSE_PATH_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_SET_FALSE_PATH_DLG(QWidget* parent);
  LUM_FALSE_PATH_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }
  std::string refusal() const override { return m_fields.refusal(); }

 private:
  LUM_FALSE_PATH_FIELDS m_fields;
};

class LUM_SET_MULTICYCLE_PATH_DLG : public LUM_DIALOG_BASE {
 public:
  explicit LUM_SET_MULTICYCLE_PATH_DLG(QWidget* parent);
  LUM_MULTICYCLE_PATH_FIELDS& fields() { return m_fields; }

 protected:
  std::string compose() const override { return m_fields.compose(); }
  std::string refusal() const override { return m_fields.refusal(); }

 private:
  LUM_MULTICYCLE_PATH_FIELDS m_fields;
};
