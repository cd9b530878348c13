#include "lum_kro_output_line.hh"

LUM_KRO_OUTPUT_LINE::LUM_KRO_OUTPUT_LINE(const MSG_POST* post) : m_type(LUM_KRO_OUTPUT_MESSAGE) { set_msg(post); }

LUM_KRO_OUTPUT_LINE::LUM_KRO_OUTPUT_LINE(std::string text) : m_type(LUM_KRO_OUTPUT_STDOUT) {
  set_stdout_str(std::move(text));
}

void LUM_KRO_OUTPUT_LINE::set_msg(const MSG_POST* post) {
  m_msg = post ? std::make_unique<MSG_POST>(*post) : nullptr;
}

void LUM_KRO_OUTPUT_LINE::set_stdout_str(std::string text) { m_text = std::make_unique<std::string>(std::move(text)); }
