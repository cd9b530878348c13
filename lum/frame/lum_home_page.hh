// The page the report view shows while no project is open: the recent
// projects and the example projects (each a link that opens it), and links
// to the help pages. Plain HTML composed from plain lists.
#pragma once

#include <string>
#include <vector>

// The example projects of a folder: every "*.vpf" one level below it
// (examples/<name>/<name>.vpf), by name.
std::vector<std::string> lum_example_projects(const std::string& examples_dir);

// The page. help_dir holds the help pages the links lead to; an empty list
// says that there is nothing of its kind.
std::string lum_home_page_html(const std::vector<std::string>& recent, const std::vector<std::string>& examples,
                               const std::string& help_dir);
