// Push-pins for the frame's docking bars. Each bar gets a title bar with a
// push-pin, float and close buttons. Unpinning a bar hides it in the frame's
// layout (the toolkit keeps its place) and moves its pane into a panel that
// slides out over the other panes from a tab on the window edge the bar was
// docked at; the pin in that panel's title, or the View menu, docks it again
// where it was. The rules (edges, slide states, sizes, the saved text) are in
// lum_dock_layout.hh.
#pragma once

#include <QAbstractButton>
#include <QObject>
#include <QPointer>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "frame/lum_dock_layout.hh"

class QDockWidget;
class QMainWindow;
class QToolBar;
class QToolButton;
class QVariantAnimation;

// The tab of an unpinned bar on its window edge; its text runs upright on the
// left and right edges.
class LUM_EDGE_TAB : public QAbstractButton {
  Q_OBJECT
 public:
  LUM_EDGE_TAB(const QString& text, LUM_DOCK_EDGE edge, QWidget* parent = nullptr);
  QSize sizeHint() const override;

 signals:
  void hovered();
  void pointer_left();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  LUM_DOCK_EDGE m_edge;
};

class LUM_DOCK_PINS : public QObject {
  Q_OBJECT
 public:
  explicit LUM_DOCK_PINS(QMainWindow* frame);
  ~LUM_DOCK_PINS() override;

  // Gives the bar its title bar with the push-pin.
  void add_bar(QDockWidget* bar);

  bool is_pinned(QDockWidget* bar) const;
  void unpin(QDockWidget* bar);
  // Docks the bar again where it was, with the size it had in its panel.
  void pin(QDockWidget* bar);
  // The pane the bar holds, wherever it is now.
  QWidget* pane(QDockWidget* bar) const;
  // Replaces the pane (the old one is deleted), pinned or not.
  void set_pane(QDockWidget* bar, QWidget* pane);

  LUM_SLIDE slide_state(QDockWidget* bar) const;
  // Slides the panel of an unpinned bar out (with the focus inside) or back.
  void slide(QDockWidget* bar, LUM_SLIDE_EVENT event);

  // Widgets a person clicks, for tests and tool tips.
  QToolButton* pin_button(QDockWidget* bar) const;
  LUM_EDGE_TAB* edge_tab(QDockWidget* bar) const;
  QWidget* slide_panel(QDockWidget* bar) const;

  // The pin states as one line for the settings, and back. restore() unpins
  // what the text names unpinned and pins the rest.
  std::string save() const;
  void restore(const std::string& text);

 signals:
  // A bar was pinned or unpinned (the View menu's marks follow).
  void pins_changed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct BAR;
  BAR* find(QDockWidget* dock) const;
  BAR* find_panel(QObject* object) const;
  QToolBar* strip(LUM_DOCK_EDGE edge);
  LUM_RECT slide_area() const;
  void apply(BAR* bar, LUM_SLIDE next);
  void place(BAR* bar, double fraction);
  void on_focus_changed(QWidget* now);
  void update_strips();

  QMainWindow* m_frame;
  std::vector<std::unique_ptr<BAR>> m_bars;
  std::map<LUM_DOCK_EDGE, QPointer<QToolBar>> m_strips;
};
