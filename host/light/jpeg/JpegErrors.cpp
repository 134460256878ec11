#include "host/light/jpeg/JpegErrors.h"

namespace vblur::host {

namespace {

JpegErrors& ErrorsOf(j_common_ptr jpeg) {
  return *static_cast<JpegErrors*>(jpeg->client_data);
}

void Keep(j_common_ptr jpeg) {
  char text[JMSG_LENGTH_MAX];
  jpeg->err->format_message(jpeg, text);
  ErrorsOf(jpeg).message = text;
}

void OnError(j_common_ptr jpeg) {
  Keep(jpeg);
  std::longjmp(ErrorsOf(jpeg).place, 1);
}

void OnMessage(j_common_ptr jpeg, int level) {
  if (level < 0) Keep(jpeg);
}

void PrintNothing(j_common_ptr) {}

}  // namespace

jpeg_error_mgr* JpegErrors::Use() {
  jpeg_std_error(&manager);
  manager.error_exit = OnError;
  manager.emit_message = OnMessage;
  manager.output_message = PrintNothing;
  return &manager;
}

}  // namespace vblur::host
