#include "data_fixture.h"

#include <cstdio>

Bytes fromHex(std::string_view hex) {
  Bytes bytes;
  std::string digits;
  for (const char c : hex)
    if (c != ' ') digits += c;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
  return bytes;
}

std::string toHex(const Bytes& bytes) {
  std::string hex;
  char pair[3];
  for (const auto b : bytes) {
    std::snprintf(pair, sizeof pair, "%02x", b);
    hex += pair;
  }
  return hex;
}

Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

Ref<KesArray> arrayOf(std::string_view text) { return KesArray::initBytesWithData(bytesOf(text)); }

std::string textOf(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

std::string outputOf(const std::string& command) {
  std::string out;
  FILE* pipe = ::popen(command.c_str(), "r");
  if (!pipe) throw std::runtime_error("cannot run " + command);
  char block[4096];
  while (const auto n = std::fread(block, 1, sizeof block, pipe)) out.append(block, n);
  EXPECT_EQ(::pclose(pipe), 0) << command;
  return out;
}

void Recorder::describe(kes::ClassBuilder<Recorder>& c) {
  c.name("recorder");
  c.sub<&Recorder::objectToBytes>("x_objecttobytes");
  c.sub<&Recorder::bytesToObject>("x_bytestoobject");
  c.sub<&Recorder::nonQueryComplete>("x_nonquerycomplete");
  c.sub<&Recorder::queryComplete>("x_querycomplete");
  c.sub<&Recorder::newData>("x_newdata");
  c.sub<&Recorder::error>("x_error");
  c.sub<&Recorder::terminated>("x_terminated");
}

void Recorder::note(std::string_view name, int success, const Value& result) {
  EXPECT_TRUE(platform::current().mainQueue().isMainThread());
  events.push_back(std::string(name) + "(" + std::to_string(success) + ")");
  results.push_back(result);
  senders.push_back(kes::Kes::sender());
}

void Recorder::newData(Ref<KesArray> bytes) {
  events.push_back("newdata(" + textOf(bytes->bytesData()) + ")");
  senders.push_back(kes::Kes::sender());
}
void Recorder::error() {
  events.push_back("error(" + kes::KesCommon::shared().LastException().Message().str() + ")");
}
void Recorder::terminated() { events.push_back("terminated"); }

RecordedTest::RecordedTest() {
  kes::ClassRegistry::instance().add<Recorder>();
  recorder = kes::make<Recorder>();
  recorder->_initialize();
}

bool RecordedTest::waitForEvents(std::size_t count) {
  return phone.runUntil([&] { return recorder->events.size() >= count; });
}
