#include "townhost/fault_script.h"

#include <rapidjson/document.h>

#include <functional>
#include <stdexcept>
#include <vector>

#include "townhost/json_text.h"

namespace town {
namespace {

using rapidjson::Value;

std::string textOf(const Value& object, const char* key, std::string otherwise) {
  const auto found = object.FindMember(key);
  if (found == object.MemberEnd()) return otherwise;
  if (!found->value.IsString()) throw std::invalid_argument(std::string(key) + " must be a text");
  return {found->value.GetString(), found->value.GetStringLength()};
}

long numberOf(const Value& object, const char* key, long otherwise) {
  const auto found = object.FindMember(key);
  if (found == object.MemberEnd()) return otherwise;
  if (!found->value.IsInt()) throw std::invalid_argument(std::string(key) + " must be a number");
  return found->value.GetInt();
}

FaultMix mixOf(const Value& object) {
  if (!object.IsObject()) throw std::invalid_argument("mix must be an object");
  FaultMix mix;
  mix.seed = static_cast<std::uint32_t>(numberOf(object, "seed", mix.seed));
  mix.longestDelay = numberOf(object, "longestDelay", mix.longestDelay);
  const auto rates = object.FindMember("rates");
  if (rates == object.MemberEnd() || !rates->value.IsObject())
    throw std::invalid_argument("mix needs rates");
  for (const auto& rate : rates->value.GetObject()) {
    const auto kind = faultKind(rate.name.GetString());
    if (!kind) throw std::invalid_argument(std::string("no such kind: ") + rate.name.GetString());
    if (!rate.value.IsNumber() || rate.value.GetDouble() < 0 || rate.value.GetDouble() > 1)
      throw std::invalid_argument("a rate goes from 0 to 1");
    mix.rate(*kind) = rate.value.GetDouble();
  }
  if (mix.longestDelay < 0) throw std::invalid_argument("longestDelay can't be negative");
  return mix;
}

Fault faultOf(const Value& object) {
  const auto name = textOf(object, "kind", "");
  const auto kind = faultKind(name);
  if (!kind) throw std::invalid_argument("no such kind: " + name);
  Fault fault{*kind, numberOf(object, "amount", 0), textOf(object, "text", ""),
              static_cast<int>(numberOf(object, "times", 0))};
  const bool signedKind = *kind == Fault::Kind::wrongLength;
  if (fault.times < 0 || (fault.amount < 0 && !signedKind))
    throw std::invalid_argument("times and amount can't be negative");
  if (*kind == Fault::Kind::status && (fault.amount < 200 || fault.amount > 599))
    throw std::invalid_argument("a status goes from 200 to 599");
  return fault;
}

}  // namespace

void applyFaultScript(Faults& faults, std::string_view json) {
  rapidjson::Document script;
  script.Parse<rapidjson::kParseIterativeFlag>(json.data(), json.size());
  if (script.HasParseError()) throw std::invalid_argument("not JSON");

  std::vector<std::function<void()>> steps;
  const auto read = [&](const Value& object) {
    if (!object.IsObject()) throw std::invalid_argument("a fault must be an object");
    auto path = textOf(object, "path", "/");
    if (const auto mix = object.FindMember("mix"); mix != object.MemberEnd())
      steps.push_back([&faults, path, mix = mixOf(mix->value)] { faults.mix(path, mix); });
    else
      steps.push_back([&faults, path, fault = faultOf(object)] { faults.add(path, fault); });
  };
  if (script.IsArray())
    for (const auto& object : script.GetArray()) read(object);
  else
    read(script);
  for (const auto& step : steps) step();
}

std::string describeFaults(const Faults& faults) {
  JsonText json;
  json.openList();
  for (const auto& rule : faults.standing()) {
    json.open().text("path", rule.pathPrefix).text("kind", nameOf(rule.fault.kind));
    json.number("amount", rule.fault.amount).text("text", rule.fault.text);
    json.number("times", rule.left).close();
  }
  return json.closeList().take();
}

}  // namespace town
