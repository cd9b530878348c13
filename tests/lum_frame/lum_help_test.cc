// The help pages: page ids to files, the search over the pages, and the
// shipped pages themselves (every link leads to a page that exists).
#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <fstream>
#include <sstream>

#include "engine/lum_help.hh"

namespace {

void write(const QTemporaryDir& dir, const char* name, const std::string& text) {
  std::ofstream(dir.filePath(name).toStdString()) << text;
}

TEST(HelpPages, PageIdsNameFilesOfTheFolderOnly) {
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  write(dir, "reports.html", "<html></html>");
  const std::string base = dir.path().toStdString();
  EXPECT_EQ(lum_help_page_target(base, "reports"), base + "/reports.html");
  EXPECT_EQ(lum_help_page_target(base, "reports#summary"), base + "/reports.html#summary");
  EXPECT_EQ(lum_help_page_target(base, "missing"), "");
  EXPECT_EQ(lum_help_page_target(base, ""), "");
  EXPECT_EQ(lum_help_page_target(base, "#summary"), "");
  EXPECT_EQ(lum_help_page_target(base, "../reports"), "");
  EXPECT_EQ(lum_help_page_target(base, "sub/reports"), "");
}

TEST(HelpPages, SearchNeedsEveryWordIgnoresMarkupAndRanksByCount) {
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  write(dir, "a.html", "<html><head><title>Clocks &amp; skew</title></head><body>clock skew, clock skew, clock</body></html>");
  write(dir, "b.html", "<html><head><title>Only clocks</title></head><body><b>Clock</b> periods</body></html>");
  write(dir, "c.html", "<html><head><title>Markup</title></head><body><a href=\"skew.html\">x</a> clock</body></html>");
  write(dir, "notes.txt", "clock skew");
  const std::string base = dir.path().toStdString();

  auto hits = lum_search_help(base, "CLOCK  skew");
  ASSERT_EQ(hits.size(), 1u) << "b lacks skew, c has it only inside a tag, notes.txt is no page";
  EXPECT_EQ(hits[0].title, "Clocks & skew");
  EXPECT_EQ(hits[0].file, base + "/a.html");
  EXPECT_NE(hits[0].excerpt.find("clock skew"), std::string::npos) << hits[0].excerpt;

  hits = lum_search_help(base, "clock");
  ASSERT_EQ(hits.size(), 3u);
  EXPECT_EQ(hits[0].title, "Clocks & skew");
  EXPECT_EQ(hits[0].count, 4);  // three in the text, one in the title
  EXPECT_TRUE(lum_search_help(base, "   ").empty());

  const std::string page = lum_help_results_html("<clock>", hits);
  EXPECT_NE(page.find("Search: &lt;clock&gt;"), std::string::npos);
  EXPECT_NE(page.find("3 pages found"), std::string::npos);
  EXPECT_NE(page.find("file://" + base + "/a.html"), std::string::npos);
  EXPECT_NE(lum_help_results_html("zzz", {}).find("No help page"), std::string::npos);
}

TEST(HelpPages, TheShippedPagesLinkOnlyToPagesThatExist) {
  const QDir dir(QString::fromStdString(lum_help_dir()));
  const QStringList pages = dir.entryList({"*.html"}, QDir::Files);
  for (const char* page : {"index.html", "getting-started.html", "tasks.html", "menus.html", "dialogs.html",
                           "reports.html", "project-files.html", "console.html"})
    EXPECT_TRUE(pages.contains(page)) << page;
  const QRegularExpression link("href=\"([^\"#:]+)(#[^\"]*)?\"");
  for (const QString& page : pages) {
    std::ifstream in(dir.filePath(page).toStdString());
    std::stringstream text;
    text << in.rdbuf();
    auto it = link.globalMatch(QString::fromStdString(text.str()));
    while (it.hasNext()) {
      const QString target = it.next().captured(1);
      // The Tcl command page is written by the engine at build time.
      if (target == "tcl-commands.html" && !pages.contains(target)) continue;
      EXPECT_TRUE(pages.contains(target)) << page.toStdString() << " links to " << target.toStdString();
    }
  }
}

}  // namespace
