#include "frame/lum_home_page.hh"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

std::string escape_html(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

// A file URL of a full path; the characters that would end or split it are escaped.
std::string file_url(const std::string& path) {
  std::string url = "file://";
  for (char c : path) {
    switch (c) {
      case ' ': url += "%20"; break;
      case '#': url += "%23"; break;
      case '%': url += "%25"; break;
      case '?': url += "%3F"; break;
      default: url += c;
    }
  }
  return url;
}

std::string project_list(const std::vector<std::string>& paths, const char* none) {
  if (paths.empty()) return std::string("<p style='color:#6b7480'>") + none + "</p>";
  std::string html = "<ul>";
  for (const std::string& path : paths) {
    const fs::path p(path);
    html += "<li><a href=\"" + escape_html(file_url(path)) + "\"><b>" + escape_html(p.stem().string()) +
            "</b></a> <span style='color:#6b7480'>" + escape_html(p.parent_path().string()) + "</span></li>";
  }
  return html + "</ul>";
}

}  // namespace

std::vector<std::string> lum_example_projects(const std::string& examples_dir) {
  std::vector<std::string> projects;
  std::error_code error;
  for (fs::directory_iterator it(examples_dir, error), end; !error && it != end; it.increment(error)) {
    std::error_code sub_error;
    if (!it->is_directory(sub_error)) continue;
    for (fs::directory_iterator file(it->path(), sub_error), last; !sub_error && file != last;
         file.increment(sub_error))
      if (file->path().extension() == ".vpf") projects.push_back(fs::absolute(file->path(), sub_error).string());
  }
  std::sort(projects.begin(), projects.end());
  return projects;
}

std::string lum_home_page_html(const std::vector<std::string>& recent, const std::vector<std::string>& examples,
                               const std::string& help_dir) {
  std::string html = "<html><head><title>Start</title></head><body>";
  html += "<h1 style='color:#24406b'>Chronel Timing Analyzer</h1>";
  html += "<p>Open a project to analyse its timing: <b>File &gt; Open Project</b> (Ctrl+O), or click one below. "
          "Then double-click a step of the <b>Tasks</b> pane; the steps it needs run first.</p>";
  html += "<h2>Recent projects</h2>" + project_list(recent, "No project was opened yet.");
  html += "<h2>Examples</h2>" + project_list(examples, "No example projects were found.");
  html += "<h2>Help</h2><ul>";
  html += "<li><a href=\"" + escape_html(file_url(help_dir + "/getting-started.html")) +
          "\">Getting started with the examples</a></li>";
  html += "<li><a href=\"" + escape_html(file_url(help_dir + "/tasks.html")) + "\">The Tasks pane</a></li>";
  html += "<li><a href=\"" + escape_html(file_url(help_dir + "/index.html")) + "\">All help pages</a> (F1)</li>";
  html += "</ul></body></html>";
  return html;
}
