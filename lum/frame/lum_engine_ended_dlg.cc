#include "frame/lum_engine_ended_dlg.hh"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

LUM_ENGINE_ENDED_DLG::LUM_ENGINE_ENDED_DLG(QWidget* parent, const LUM_ENGINE_END& end, int constraint_count,
                                           const std::string& project_name, ACTIONS actions)
    : QDialog(parent), m_actions(std::move(actions)) {
  setObjectName("LUM_ENGINE_ENDED_DLG");
  setWindowTitle("Chronel Timing Analyzer");
  auto* layout = new QVBoxLayout(this);

  auto* what = new QLabel(QString::fromStdString("The Chronel Timing Analyzer (vexa_sta) no longer runs: " +
                                                 lum_engine_end_reason(end) +
                                                 ".  The window stays open with its console and history."));
  what->setObjectName("reason");
  what->setWordWrap(true);
  layout->addWidget(what);

  if (!end.last_error_lines.empty()) {
    layout->addWidget(new QLabel("The last lines of its error output:"));
    auto* output = new QPlainTextEdit;
    output->setObjectName("error_output");
    output->setReadOnly(true);
    output->setLineWrapMode(QPlainTextEdit::NoWrap);
    output->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    QString text;
    for (const std::string& line : end.last_error_lines) text += QString::fromStdString(line) + "\n";
    output->setPlainText(text.trimmed());
    output->setMinimumSize(520, 120);
    layout->addWidget(output);
  }

  auto* constraints = new QLabel(
      constraint_count == 0 ? QString("No constraint commands were sent in this session.")
      : constraint_count == 1
          ? QString("1 constraint command was sent in this session; it is lost with the analyzer unless you save it.")
          : QString("%1 constraint commands were sent in this session; they are lost with the analyzer unless you "
                    "save them.")
                .arg(constraint_count));
  constraints->setObjectName("constraints");
  constraints->setWordWrap(true);
  layout->addWidget(constraints);
  m_status = new QLabel;
  m_status->setObjectName("status");
  m_status->setWordWrap(true);
  m_status->hide();
  layout->addWidget(m_status);

  auto* buttons = new QHBoxLayout;
  m_save = new QPushButton("&Save Constraints as SDC...");
  m_save->setObjectName("save_constraints");
  m_save->setEnabled(constraint_count > 0 && static_cast<bool>(m_actions.save_constraints));
  m_restart = new QPushButton(project_name.empty() ? QString("&Restart Analyzer")
                                                   : QString("&Restart Analyzer and Reopen %1")
                                                         .arg(QString::fromStdString(project_name)));
  m_restart->setObjectName("restart");
  m_restart->setEnabled(static_cast<bool>(m_actions.restart));
  m_close = new QPushButton("&Close");
  m_close->setObjectName("close");
  buttons->addWidget(m_save);
  buttons->addStretch(1);
  buttons->addWidget(m_restart);
  buttons->addWidget(m_close);
  layout->addLayout(buttons);
  (constraint_count > 0 ? m_save : m_restart)->setDefault(true);

  connect(m_save, &QPushButton::clicked, this, [this] {
    const std::string said = m_actions.save_constraints();
    if (said.empty()) return;
    m_status->setText(QString::fromStdString(said));
    m_status->show();
  });
  connect(m_restart, &QPushButton::clicked, this, [this] {
    // The box goes first: starting the engine waits for its first prompt.
    std::function<void()> restart = m_actions.restart;
    accept();
    restart();
  });
  connect(m_close, &QPushButton::clicked, this, &QDialog::reject);
}

QString LUM_ENGINE_ENDED_DLG::get_status_text() const { return m_status->isHidden() ? QString() : m_status->text(); }
