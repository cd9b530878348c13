#include "dialogs/lum_tcl_word.hh"

#include <tcl.h>

std::string lum_tcl_word(std::string_view text) {
  return lum_tcl_list({std::string(text)});
}

std::string lum_tcl_name_word(std::string_view text) {
  if (!text.empty() && text.front() == '[') return std::string(text);
  return lum_tcl_word(text);
}

std::string lum_tcl_list(const std::vector<std::string>& texts) {
  if (texts.empty()) return std::string();
  std::vector<const char*> argv;
  argv.reserve(texts.size());
  for (const std::string& text : texts) argv.push_back(text.c_str());
  char* merged = Tcl_Merge(static_cast<int>(argv.size()), argv.data());
  std::string result(merged);
  Tcl_Free(merged);
  return result;
}
