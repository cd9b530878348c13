#include "engine/lum_help.hh"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "engine/lum_frame_iface.hh"
#include "platform/gen.hh"

namespace fs = std::filesystem;

namespace {

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

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

// The readable text of a page: tags dropped, the common entities decoded,
// runs of white space made one blank.
std::string text_of_html(const std::string& html) {
  std::string text;
  bool in_tag = false;
  for (size_t i = 0; i < html.size(); ++i) {
    const char c = html[i];
    if (in_tag) {
      if (c == '>') {
        in_tag = false;
        text += ' ';
      }
      continue;
    }
    if (c == '<') {
      in_tag = true;
      continue;
    }
    if (c == '&') {
      static const std::pair<const char*, char> entities[] = {{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}};
      bool decoded = false;
      for (const auto& [name, value] : entities) {
        if (html.compare(i, std::char_traits<char>::length(name), name) == 0) {
          text += value;
          i += std::char_traits<char>::length(name) - 1;
          decoded = true;
          break;
        }
      }
      if (decoded) continue;
    }
    text += std::isspace(static_cast<unsigned char>(c)) ? ' ' : c;
  }
  std::string squeezed;
  for (char c : text)
    if (c != ' ' || (!squeezed.empty() && squeezed.back() != ' ')) squeezed += c;
  return squeezed;
}

std::string title_of_html(const std::string& html) {
  const std::string low = lower(html);
  const size_t start = low.find("<title>");
  const size_t end = low.find("</title>");
  if (start == std::string::npos || end == std::string::npos || end < start) return {};
  return text_of_html(html.substr(start + 7, end - start - 7));
}

}  // namespace

bool lum_show_help(const std::string& page_id) {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return false;
  const std::string dir = lum_help_dir();
  std::string target = lum_help_page_target(dir, page_id);
  const bool found = !target.empty();
  if (!found) target = lum_help_page_target(dir, "index");
  if (!target.empty()) frame->open_help_page(target);
  return found;
}

std::string lum_help_dir() {
  // The pages are looked up through one file that every build has.
  const std::string index = gen_get_common_misc_fullpath("help/index.html");
  return index.substr(0, index.find_last_of('/'));
}

std::string lum_help_page_target(const std::string& dir, const std::string& page_id) {
  const size_t hash = page_id.find('#');
  const std::string name = page_id.substr(0, hash);
  if (name.empty() || name.find('/') != std::string::npos || name.find("..") != std::string::npos) return {};
  const std::string path = dir + "/" + name + ".html";
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return {};
  return hash == std::string::npos ? path : path + page_id.substr(hash);
}

std::vector<LUM_HELP_HIT> lum_search_help(const std::string& dir, const std::string& query) {
  std::vector<std::string> words;
  std::istringstream split(lower(query));
  for (std::string word; split >> word;) words.push_back(word);
  std::vector<LUM_HELP_HIT> hits;
  if (words.empty()) return hits;
  std::error_code error;
  for (fs::directory_iterator it(dir, error), end; !error && it != end; it.increment(error)) {
    if (it->path().extension() != ".html") continue;
    std::ifstream in(it->path(), std::ios::binary);
    std::stringstream content;
    content << in.rdbuf();
    const std::string html = content.str();
    const std::string text = text_of_html(html);
    const std::string low = lower(text);
    LUM_HELP_HIT hit;
    bool all = true;
    for (const std::string& word : words) {
      int count = 0;
      for (size_t at = low.find(word); at != std::string::npos; at = low.find(word, at + word.size())) ++count;
      if (count == 0) all = false;
      hit.count += count;
    }
    if (!all) continue;
    hit.file = it->path().string();
    hit.title = title_of_html(html);
    if (hit.title.empty()) hit.title = it->path().stem().string();
    const size_t first = low.find(words.front());
    const size_t from = first > 60 ? first - 60 : 0;
    hit.excerpt = (from > 0 ? "..." : "") + text.substr(from, 160) + (from + 160 < text.size() ? "..." : "");
    hits.push_back(std::move(hit));
  }
  std::sort(hits.begin(), hits.end(), [](const LUM_HELP_HIT& a, const LUM_HELP_HIT& b) {
    return a.count != b.count ? a.count > b.count : a.title < b.title;
  });
  return hits;
}

std::string lum_help_results_html(const std::string& query, const std::vector<LUM_HELP_HIT>& hits) {
  std::string html = "<html><head><title>Search: " + escape_html(query) + "</title></head><body>";
  html += "<h1>Search: " + escape_html(query) + "</h1>";
  if (hits.empty()) {
    html += "<p>No help page holds every one of these words.</p>";
  } else {
    html += "<p>" + std::to_string(hits.size()) + (hits.size() == 1 ? " page" : " pages") + " found.</p><ul>";
    for (const LUM_HELP_HIT& hit : hits) {
      std::string url = "file://";
      for (char c : hit.file) url += c == ' ' ? std::string("%20") : c == '#' ? std::string("%23") : std::string(1, c);
      html += "<li><a href=\"" + escape_html(url) + "\">" + escape_html(hit.title) + "</a><br>" +
              escape_html(hit.excerpt) + "</li>";
    }
    html += "</ul>";
  }
  return html + "</body></html>";
}
