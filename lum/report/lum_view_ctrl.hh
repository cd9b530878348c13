// LUM_VIEW_CTRL: one page control of the report view. It shows one page at a
// time (a report panel, a web page or the tasks pane) under a caption that
// carries the page's title, or it is split into two or four panes, each a
// page control of its own.
//
// Pages are rebuilt, never updated in place: refresh() opens the current page
// type and path again, which picks up a new report after every engine run and
// closes the page ("Data not available") when its object has gone.
#pragma once

#include "report/lum_report_rules.hh"

#include <QFrame>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QLabel;
class QSplitter;
class QVBoxLayout;
class RDB_OBJECT;
class RDB_REPORT;
class LUM_REPORT_VIEW;
struct LUM_HISTOGRAM_DATA;

enum LUM_VIEW_TYPE_ENUM {
  LUM_VIEW_NONE = 0,          // no page
  LUM_VIEW_REPORT_PANEL = 1,  // argument: the database path of the object
  LUM_VIEW_WEB_PAGE = 2,      // argument: a file path or an address
  LUM_VIEW_TASKS_PANE = 3,    // argument: the title
};

// The title of a control without a page.
inline constexpr const char* LUM_DATA_NOT_AVAILABLE = "Data not available";

class LUM_VIEW_CTRL : public QFrame {
  Q_OBJECT

 public:
  // The tasks pane belongs to the main frame; it tells how to make one.
  using TASKS_PANE_FACTORY = std::function<QWidget*(QWidget* parent)>;
  static void set_tasks_pane_factory(TASKS_PANE_FACTORY factory);
  // A link clicked in a web page goes to this handler first; when it returns
  // true the link was dealt with (a project opened, say) and the page stays.
  // Other links open in the page, and web addresses in the desktop's browser.
  using LINK_HANDLER = std::function<bool(const std::string& url)>;
  static void set_link_handler(LINK_HANDLER handler);

  LUM_VIEW_CTRL(LUM_REPORT_VIEW* view, QWidget* parent);
  ~LUM_VIEW_CTRL() override;

  // Closes the current page and opens another; an empty path opens nothing.
  void open_page(LUM_VIEW_TYPE_ENUM type, const std::string& path);
  void close_page();
  // Re-opens the current page here and in every pane.
  void refresh();
  // Opens the other control's page here.
  void clone(const LUM_VIEW_CTRL& other);

  // Splits (or with LUM_SPLIT_NONE unsplits) at the halves of the client
  // area. Unsplitting keeps the page of the report view's active control
  // when it lies inside this one.
  void split(LUM_SPLIT_ENUM mode);
  // Creates or removes panes to match the split positions.
  void do_split();
  const LUM_SPLIT_POSITIONS& get_split_positions() const { return m_positions; }
  bool is_split() const { return !m_panes.empty(); }
  const std::vector<LUM_VIEW_CTRL*>& get_panes() const { return m_panes; }
  // The page control this one is a pane of; null for the top control.
  LUM_VIEW_CTRL* get_parent_ctrl() const;
  LUM_REPORT_VIEW* get_parent_view() const { return m_view; }
  // The pane still in sight after a bar was dragged off (the one holding the
  // active control when that is in sight); null when not split.
  LUM_VIEW_CTRL* get_shown_pane() const;
  // Unsplits when a split bar was dragged to the edge, so that a pane has
  // collapsed; the page in sight stays.
  void unsplit_if_collapsed();
  // True when ctrl is this control or lies in one of its panes.
  bool contains(const LUM_VIEW_CTRL* ctrl) const;

  LUM_VIEW_TYPE_ENUM get_type() const { return m_type; }
  const std::string& get_path() const { return m_path; }
  QString get_title() const;
  // The window that shows the page (null when there is none).
  QWidget* get_page_window() const { return m_page; }
  bool is_out_of_date() const { return m_out_of_date; }

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void set_title(const QString& title);
  void set_page(QWidget* page);
  void open_report_panel(const std::string& path);
  QWidget* create_viewer(RDB_OBJECT* object, bool out_of_date);
  // Opens the path that a row of a table of path summaries stands for.
  void open_summarised_path(const std::string& table_path, int64_t database_row);
  // Sends the report_timing command for the end points of bins first..last
  // of the histogram panel `panel`.
  void report_slack_range(const LUM_HISTOGRAM_DATA& data, const std::string& panel, int first, int last);
  void remove_panes();
  LUM_VIEW_CTRL* add_pane(QSplitter* splitter);

  LUM_REPORT_VIEW* m_view;
  QVBoxLayout* m_layout;
  QLabel* m_caption;
  QLabel* m_placeholder;
  QWidget* m_page = nullptr;
  LUM_VIEW_TYPE_ENUM m_type = LUM_VIEW_NONE;
  std::string m_path;
  bool m_out_of_date = false;
  // The report whose objects the page reads while it is shown.
  std::shared_ptr<RDB_REPORT> m_report;
  LUM_SPLIT_POSITIONS m_positions;
  QSplitter* m_splitter = nullptr;
  std::vector<LUM_VIEW_CTRL*> m_panes;
};
