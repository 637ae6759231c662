#include "platform/push/local_line.h"

namespace push {

LocalLine::LocalLine(platform::MainQueue& queue) : inbox_(std::make_shared<Inbox>("", queue)) {}
LocalLine::~LocalLine() { inbox_->close(); }

void LocalLine::receive(std::string_view payload) {
  inbox_->take(payload, "local:" + std::to_string(++received_));
}

void LocalLine::connect(Completion completion) { completion("local"); }

}  // namespace push
