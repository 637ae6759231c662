#include "runtime/core/class_table.h"

namespace kes {

bool ClassInfo::isA(const ClassInfo& other) const {
  for (const auto* c = this; c; c = c->base_)
    if (c == &other) return true;
  return false;
}

const SubInfo* ClassInfo::method(std::string_view fullName) const {
  if (fullName.starts_with('_'))
    if (const auto* s = sub(fullName.substr(1))) return s;
  for (const auto* c = this; c; c = c->base_)
    for (const auto& m : c->methods_)
      if (m.name == fullName) return &m;
  return nullptr;
}

const FieldInfo* ClassInfo::field(std::string_view storedName) const {
  for (const auto& f : fields_)
    if (f.name == storedName) return &f;
  return nullptr;
}

const FieldInfo* ClassInfo::property(std::string_view name) const {
  if (const auto* f = field(name)) return f;
  const std::string stored = "_" + std::string(name);
  const auto* f = field(stored);
  return f ? f : field(Text(stored).ToLowerCase());
}

void ClassInfo::index() {
  if (base_) {
    for (const auto& inherited : base_->subs_) {
      bool overridden = false;
      for (const auto& own : subs_) overridden = overridden || own.name == inherited.name;
      if (!overridden) subs_.push_back(inherited);
    }
    fields_.insert(fields_.begin(), base_->fields_.begin(), base_->fields_.end());
  }
  const std::size_t slots = std::bit_ceil(subs_.size() * 2 + 1);
  slots_.assign(slots, 0);
  for (std::size_t n = 0; n < subs_.size(); ++n) {
    subs_[n].hash = hashName(subs_[n].name);
    std::size_t i = subs_[n].hash & (slots - 1);
    for (; slots_[i]; i = (i + 1) & (slots - 1))
      if (subs_[slots_[i] - 1].name == subs_[n].name)
        throw KesException(formatText("%@ has two subs named _%@", {name_, subs_[n].name}));
    slots_[i] = static_cast<std::uint32_t>(n + 1);
  }
}

ClassRegistry& ClassRegistry::instance() {
  // Never destroyed: work in the background may outlive main().
  static auto& registry = *new ClassRegistry;
  return registry;
}

const ClassInfo& ClassRegistry::finish(std::unique_ptr<ClassInfo>& slot,
                                       std::unique_ptr<ClassInfo> info) {
  info->index();
  byName_[info->name_] = info.get();
  slot = std::move(info);
  return *slot;
}

const ClassInfo* ClassRegistry::find(std::string_view name) const {
  auto i = byName_.find(std::string(name));
  return i == byName_.end() ? nullptr : i->second;
}

const ClassInfo* ClassRegistry::of(const Shared& object) const {
  auto i = byType_.find(std::type_index(typeid(object)));
  return i == byType_.end() ? nullptr : i->second.get();
}

}  // namespace kes
