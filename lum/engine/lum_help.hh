// The help pages: HTML files in the "help" folder of the misc directory (the
// page of the engine's Tcl commands is written at build time by the engine
// itself). The main frame shows them in the report view.
//
// A dialog opens its own page with F1 through lum_show_help and a page id,
// the page's file name without ".html", optionally with an anchor:
//
//   auto* f1 = new QShortcut(QKeySequence::HelpContents, this);
//   connect(f1, &QShortcut::activated, this, [] { lum_show_help("dialogs#constraints"); });
//
// Page ids in use: "index", "getting-started", "tasks", "menus", "dialogs",
// "reports", "tcl-commands", "project-files", "console"; anchors are the
// <a name="..."> marks of each page.
#pragma once

#include <string>
#include <vector>

// Opens a page in the main frame's report view. An id that names no page
// opens the contents page; returns whether the page itself was found. Does
// nothing without a main frame.
bool lum_show_help(const std::string& page_id);

// The folder of the help pages.
std::string lum_help_dir();

// The target of a page id in a folder: the file's path, with "#anchor"
// appended when the id has one; empty when the file does not exist or the id
// is not a plain file name.
std::string lum_help_page_target(const std::string& dir, const std::string& page_id);

// One page that holds every word of a search.
struct LUM_HELP_HIT {
  std::string file;     // full path
  std::string title;    // the page's <title>
  std::string excerpt;  // the text around the first match
  int count = 0;        // occurrences of the words
};

// Searches the pages of a folder for every word of a query (case ignored,
// markup ignored); the best matches first.
std::vector<LUM_HELP_HIT> lum_search_help(const std::string& dir, const std::string& query);

// A page that lists the hits of a search, with links to the pages.
std::string lum_help_results_html(const std::string& query, const std::vector<LUM_HELP_HIT>& hits);
