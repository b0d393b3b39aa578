#include "Rok/Trace.h"

#include <cstdio>
#include <map>

#include "Rok/Exceptions.h"

namespace Rok {

// Every handle that was used, and what is switched on. Never destroyed: handles outlive everything.
struct TraceRegistry {
  TraceHandle* handles = nullptr;
  std::map<std::string, std::uint32_t, std::less<>> masks;
  std::uint32_t maskOfAll = 0;
  TraceFacility::Sink sink;

  static TraceRegistry& instance() {
    static auto* registry = new TraceRegistry;
    return *registry;
  }

  std::uint32_t maskOf(std::string_view name) const {
    const auto found = masks.find(name);
    return maskOfAll | (found != masks.end() ? found->second : 0);
  }
  void refresh() {
    for (TraceHandle* h = handles; h != nullptr; h = h->next_) h->mask_ = maskOf(h->name_);
  }
  void registerHandle(TraceHandle& handle) {
    handle.next_ = handles;
    handles = &handle;
    handle.mask_ = maskOf(handle.name_);
  }
};

namespace {

std::uint32_t bitOf(TraceFacility::FacilityLevel level) {
  if (level >= TraceFacility::levels) {
    throwRangeException(_fmt("trace level %u is not one of 0 to 9", level));
  }
  return 1u << level;
}

// A line stays one line, whatever a name holds.
std::string oneLine(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      result += c;
    } else {
      constexpr const char* digits = "0123456789abcdef";
      result += "\\x";
      result += digits[byte >> 4];
      result += digits[byte & 15];
    }
  }
  return result;
}

void writeToStandardError(const TraceFacility::Line& line) {
  std::fprintf(stderr, "%.*s %u %.*s\n", static_cast<int>(line.handle.size()), line.handle.data(),
               line.level, static_cast<int>(line.text.size()), line.text.data());
}

}  // namespace

void TraceFacility::levelIs(std::string_view handle, FacilityLevel level, bool on) {
  TraceRegistry& registry = TraceRegistry::instance();
  std::uint32_t& mask = registry.masks[std::string(handle)];
  mask = on ? mask | bitOf(level) : mask & ~bitOf(level);
  registry.refresh();
}

void TraceFacility::levelIs(FacilityLevel level, bool on) {
  TraceRegistry& registry = TraceRegistry::instance();
  registry.maskOfAll = on ? registry.maskOfAll | bitOf(level) : registry.maskOfAll & ~bitOf(level);
  registry.refresh();
}

void TraceFacility::levelDelAll() {
  TraceRegistry& registry = TraceRegistry::instance();
  registry.masks.clear();
  registry.maskOfAll = 0;
  registry.refresh();
}

TraceFacility::Sink TraceFacility::sinkIs(Sink sink) {
  return std::exchange(TraceRegistry::instance().sink, std::move(sink));
}

bool TraceHandle::isOnAfterRegistering(TraceFacility::FacilityLevel level) {
  if (mask_ == unregistered) TraceRegistry::instance().registerHandle(*this);
  return ((mask_ >> level) & 1) != 0;
}

struct TraceHelper::Open {
  TraceFacility::Line line;
  TraceStream stream;
};

void TraceHelper::open(TraceHandle& handle, TraceFacility::FacilityLevel level,
                       const char* sourceFile, unsigned sourceLine, const char* functionName) {
  line_ = new Open{{handle.name(), level, sourceFile, sourceLine, functionName, {}}, {}};
}

void TraceHelper::close() noexcept {
  const std::string text = oneLine(line_->stream.text());
  line_->line.text = text;
  // A copy: the sink may put another in its place.
  if (const TraceFacility::Sink sink = TraceRegistry::instance().sink) {
    sink(line_->line);
  } else {
    writeToStandardError(line_->line);
  }
  delete line_;
}

TraceStream& TraceHelper::stream() { return line_->stream; }

const char* TraceHelper::functionName() const { return line_->line.functionName; }

}  // namespace Rok
