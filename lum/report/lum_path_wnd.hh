// LUM_PATH_WND: one timing path of the report database in four titled
// panels: the path summary (its caption carries the slack, red when the path
// fails), the delay statistics chart beside it, and under them the data
// arrival and data required paths with their incremental and total times.
// LUM_PANEL_WND is one such panel: a caption bar over one child window.
#pragma once

#include <QWidget>

#include <array>

class QLabel;
class QSplitter;
class RDB_OBJECT;
class LUM_CHART_WND;
class LUM_TABLE;

class LUM_PANEL_WND : public QWidget {
  Q_OBJECT

 public:
  LUM_PANEL_WND(const QString& caption, QWidget* parent = nullptr);
  void set_child(QWidget* child);
  QWidget* get_child() const { return m_child; }
  // The caption; violated paints it red.
  void set_caption(const QString& caption, bool violated = false);
  QString get_caption() const;
  bool is_caption_red() const { return m_red; }
  int caption_height() const;
  void set_out_of_date(bool out_of_date);
  bool is_out_of_date() const { return m_out_of_date; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QLabel* m_caption;
  QWidget* m_child = nullptr;
  bool m_red = false;
  bool m_out_of_date = false;
};

// The heights of the path window's three rows in `total` pixels: the summary
// row gets what its table needs (at most two thirds of the total); the arrival and required rows get what theirs need, the required
// row also what is left over; when they do not both fit, the smaller gets
// its need (at most half the rest) and the larger the remainder.
std::array<int, 3> lum_path_row_heights(int total, int summary, int arrival, int required);

// The caption of the summary panel: "SLACK: " and the slack in ns with three
// decimals, then " (VIOLATED)" for a failing path.
QString lum_path_slack_caption(double slack, bool violated);

class LUM_PATH_WND : public QWidget {
  Q_OBJECT

 public:
  explicit LUM_PATH_WND(QWidget* parent = nullptr);

  // False (an internal error) when the object is not a path.
  bool load_rdb_path(const RDB_OBJECT* object);
  void set_out_of_date(bool out_of_date);

  enum PANEL { SUMMARY = 0, CHART = 1, ARRIVAL = 2, REQUIRED = 3 };
  LUM_PANEL_WND* get_panel(PANEL panel) const { return m_panels[panel]; }
  LUM_TABLE* get_summary_table() const { return m_summary_table; }
  LUM_CHART_WND* get_summary_chart() const { return m_summary_chart; }
  LUM_TABLE* get_data_arrival_table() const { return m_data_arrival_table; }
  LUM_TABLE* get_data_required_table() const { return m_data_required_table; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  // The height a panel needs to show every row of its table.
  int wanted_height(const LUM_PANEL_WND* panel, const LUM_TABLE* table, int extra) const;
  void balance_rows();

  QSplitter* m_outer;
  QSplitter* m_inner;
  std::array<LUM_PANEL_WND*, 4> m_panels{};
  LUM_TABLE* m_summary_table;
  LUM_CHART_WND* m_summary_chart;
  LUM_TABLE* m_data_arrival_table;
  LUM_TABLE* m_data_required_table;
};
