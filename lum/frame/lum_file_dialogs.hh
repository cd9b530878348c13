// File choosers of the front end. Every open and save question goes through
// lum_ask_file, so that tests answer it without a window (and without the
// native dialog's event loop) by installing a handler.
#pragma once

#include <QStringList>

#include <functional>
#include <string>

class QWidget;

struct LUM_FILE_REQUEST {
  bool save = false;             // a save question (with the overwrite prompt)
  QString title;
  QString directory;             // where the dialog starts
  QString default_name;          // e.g. "log.txt"
  QString default_suffix;        // without the dot, e.g. "txt"
  QStringList filters;           // "Text Files (*.txt)", "All Files (*)"
};

// The chosen full path, or an empty string when the question was cancelled.
std::string lum_ask_file(QWidget* parent, const LUM_FILE_REQUEST& request);

using LUM_FILE_DIALOG_HANDLER = std::function<std::string(const LUM_FILE_REQUEST&)>;
// Replaces the dialogs (tests); an empty handler brings the dialogs back.
void lum_set_file_dialog_handler(LUM_FILE_DIALOG_HANDLER handler);
