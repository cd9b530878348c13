// Errors of the report database library.
//
// Every failure that comes from the outside world (a file that is not a report
// database, a schema written by a newer program, a damaged or locked file, a
// panel name the writer cannot store) is reported as an RDB_ERROR whose message
// names the file and the reason, so that the engine can print it and the front
// end can show it without knowing SQLite.
#pragma once

#include <stdexcept>
#include <string>

class RDB_ERROR : public std::runtime_error {
public:
  // `file` may be empty for errors that concern no file (a bad argument).
  RDB_ERROR(const std::string& file, const std::string& reason)
      : std::runtime_error(file.empty() ? reason
                                        : "Report database \"" + file + "\": " + reason),
        m_file(file), m_reason(reason) {}

  const std::string& get_file() const { return m_file; }
  const std::string& get_reason() const { return m_reason; }

private:
  std::string m_file;
  std::string m_reason;
};
