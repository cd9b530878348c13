#include "frame/lum_file_dialogs.hh"

#include <QDir>
#include <QFileDialog>

namespace {
LUM_FILE_DIALOG_HANDLER& handler() {
  static LUM_FILE_DIALOG_HANDLER h;
  return h;
}
}  // namespace

void lum_set_file_dialog_handler(LUM_FILE_DIALOG_HANDLER h) { handler() = std::move(h); }

std::string lum_ask_file(QWidget* parent, const LUM_FILE_REQUEST& request) {
  if (handler()) return handler()(request);
  QFileDialog dialog(parent, request.title);
  dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(request.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setOption(QFileDialog::ReadOnly, false);
  dialog.setNameFilters(request.filters);
  if (!request.default_suffix.isEmpty()) dialog.setDefaultSuffix(request.default_suffix);
  dialog.setDirectory(request.directory.isEmpty() ? QDir::currentPath() : request.directory);
  if (!request.default_name.isEmpty()) dialog.selectFile(request.default_name);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().first().toStdString();
}
