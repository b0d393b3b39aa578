// OVERVIEW
//   Trace lines: one handle a compilation unit, ten levels, one sink. A line is built only when its
//   level is on; when it is off, it costs one test.
//
// RULES
//   - Level 0 is for faults in the data, 2 and 8 for the entry of a handler, 9 for further detail.
//   - Levels are switched by the handle's name; handles of one name go together. All are off at
//     first.
//   - A sink must not change what the process translates, neither the native objects nor the
//     output: handlers hold no extra references against that.
//   - A sink must not throw: that ends the process.
//   - The sink gets whole lines, without the end of line. Without a sink of its own a process
//     writes them to standard error.
//   - A name or a text goes into the line as it is, except that control characters are written as
//     \xNN: a line stays one line.
//
// EXAMPLE
//   constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);
//   constexpr Rok::TraceLevel handler{traceHandle, 8};
//   constexpr Rok::TraceLevel detail{traceHandle, 9};
//
//   void Counter::handleTick(int n) {
//     Rok::traceEntry(handler, *this, n);
//     if (n % 2 == 0) Rok::traceLine(detail, "an even tick: ", n);
//     if (Rok::TraceHelper line{detail}) line << "ticks so far: " << ticks();
//   }
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <source_location>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

#include "Dorpel/Export.h"
#include "Velmo/String.h"

namespace Rok {

// Which lines are written, and where they go: for the whole process.
struct QOS_EXPORT TraceFacility {
  using FacilityLevel = unsigned;
  static constexpr FacilityLevel levels = 10;

  // One finished line.
  struct Line {
    std::string_view handle;
    FacilityLevel level;
    const char* sourceFile;
    unsigned sourceLine;
    const char* functionName;
    std::string_view text;
  };
  using Sink = std::function<void(const Line&)>;

  // Switches a level of all handles of that name, present and future.
  // Throws: RangeException for a level above 9.
  static void levelIs(std::string_view handle, FacilityLevel level, bool on);
  // The same for all handles of any name.
  static void levelIs(FacilityLevel level, bool on);
  // Switches everything off.
  static void levelDelAll();

  // Where lines go. Returns the sink that was there; an empty one stands for standard error.
  static Sink sinkIs(Sink sink);
};

// A unit's handle on the trace. It registers itself at its first use and lives as long as the
// process.
class QOS_EXPORT TraceHandle {
 public:
  constexpr TraceHandle(const char* name, bool /*unused*/) : name_(name) {}

  std::string_view name() const { return name_; }
  // Whether lines of the level are written.
  bool isOn(TraceFacility::FacilityLevel level) {
    return ((mask_ >> level) & 1) != 0 && isOnAfterRegistering(level);
  }

 private:
  friend struct TraceFacility;
  friend struct TraceRegistry;
  static constexpr std::uint32_t unregistered = 0xffffffffu;

  bool isOnAfterRegistering(TraceFacility::FacilityLevel level);

  const char* name_;
  std::uint32_t mask_ = unregistered;  // a bit for each level; all of them before the first use
  TraceHandle* next_ = nullptr;
};

// A level of a unit's handle: `constexpr Rok::TraceLevel detail{traceHandle, 9};`.
struct TraceLevel {
  TraceHandle& handle;
  TraceFacility::FacilityLevel level;

  bool isOn() const { return handle.isOn(level); }
};

// What a trace line takes: texts as they are, anything else through its operator<<.
class QOS_EXPORT TraceStream {
 public:
  TraceStream& operator<<(const char* text) { return add(text); }
  TraceStream& operator<<(std::string_view text) { return add(text); }
  TraceStream& operator<<(const std::string& text) { return add(text); }
  TraceStream& operator<<(const Velmo::String& text) { return add(text); }
  TraceStream& operator<<(unsigned value) {
    stream_ << value;
    return *this;
  }
  template <class T>
  TraceStream& operator<<(const T& value) {
    stream_ << value;
    return *this;
  }

  // Where the line is built, and what is there of it.
  std::ostream& stream() { return stream_; }
  std::string text() const { return stream_.str(); }

 private:
  TraceStream& add(std::string_view text) {
    stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
    return *this;
  }
  std::ostringstream stream_;
};

namespace Impl {
template <class T>
concept Printable = requires(std::ostream& out, const T& value) {
  out << value;
};
}  // namespace Impl

// Opens one trace line; its destructor ends the line and hands it to the sink. When the level is
// off the helper is false and takes nothing: `if (Rok::TraceHelper line{handle, 8}) line << ...`.
//
// The functions are always inline: by itself the compiler finds a handler's many helpers too large,
// and then a line that is off costs a call and five arguments instead of one test.
class QOS_EXPORT TraceHelper {
 public:
  [[gnu::always_inline]] TraceHelper(TraceHandle& handle, TraceFacility::FacilityLevel level,
                                     std::source_location place = std::source_location::current()) {
    if (handle.isOn(level)) [[unlikely]] {
      open(handle, level, place.file_name(), place.line(), place.function_name());
    }
  }
  [[gnu::always_inline]] explicit TraceHelper(
      TraceLevel at, std::source_location place = std::source_location::current())
      : TraceHelper(at.handle, at.level, place) {}
  TraceHelper(TraceHandle& handle, TraceFacility::FacilityLevel level, const char* sourceFile,
              unsigned sourceLine, const char* functionName) {
    if (handle.isOn(level)) [[unlikely]] {
      open(handle, level, sourceFile, sourceLine, functionName);
    }
  }
  TraceHelper(const TraceHelper&) = delete;
  TraceHelper& operator=(const TraceHelper&) = delete;
  [[gnu::always_inline]] ~TraceHelper() {
    if (line_) [[unlikely]]
      close();
  }

  explicit operator bool() const { return line_ != nullptr; }
  // Requires, like all below: *this is true.
  template <class T>
  TraceHelper& operator<<(const T& value) {
    stream() << value;
    return *this;
  }
  // Begins the line with the object, by its operator<< or as its address.
  template <class Object>
  TraceHelper& of(const Object& object) {
    if constexpr (Impl::Printable<Object>) {
      return *this << object << " ";
    } else {
      return *this << static_cast<const void*>(&object) << " ";
    }
  }
  // Begins the line with the object and the function's signature.
  template <class Object>
  TraceHelper& in(const Object& object) {
    return of(object) << functionName();
  }
  // Begins the line with the function's signature.
  TraceHelper& in() { return *this << functionName(); }

 private:
  struct Open;
  [[gnu::cold]] void open(TraceHandle& handle, TraceFacility::FacilityLevel level,
                          const char* sourceFile, unsigned sourceLine, const char* functionName);
  [[gnu::cold]] void close() noexcept;
  TraceStream& stream();
  const char* functionName() const;

  Open* line_ = nullptr;
};

// Where a line is written: at a level, and where in the sources. The place adds itself.
struct TraceAt {
  [[gnu::always_inline]] TraceAt(TraceLevel of,
                                 std::source_location here = std::source_location::current())
      : handle(of.handle), level(of.level), place(here) {}

  TraceHandle& handle;
  TraceFacility::FacilityLevel level;
  std::source_location place;
};

namespace Impl {

// Writes a line that is on: what `head` begins it with, then the parts.
template <class Head, class... Parts>
[[gnu::cold]] void traceWrite(const TraceAt& at, const Head& head, const Parts&... parts) {
  TraceHelper line{at.handle, at.level, at.place};
  head(line);
  static_cast<void>((line << ... << parts));
}

}  // namespace Impl

// A line in one statement. Its parts are evaluated also while the level is off, so a line that
// computes its parts opens a TraceHelper instead.
template <class... Parts>
[[gnu::always_inline]] inline void traceLine(const TraceAt& at, const Parts&... parts) {
  if (at.handle.isOn(at.level)) [[unlikely]]
    Impl::traceWrite(
        at, [](TraceHelper&) {}, parts...);
}
// The same behind the object.
template <class Object, class... Parts>
[[gnu::always_inline]] inline void traceOf(const TraceAt& at, const Object& object,
                                           const Parts&... parts) {
  if (at.handle.isOn(at.level)) [[unlikely]]
    Impl::traceWrite(
        at, [&](TraceHelper& line) { line.of(object); }, parts...);
}
// The same behind the object and the function's signature.
template <class Object, class... Parts>
[[gnu::always_inline]] inline void traceIn(const TraceAt& at, const Object& object,
                                           const Parts&... parts) {
  if (at.handle.isOn(at.level)) [[unlikely]]
    Impl::traceWrite(
        at, [&](TraceHelper& line) { line.in(object); }, parts...);
}
// The same behind the signature of a free function.
template <class... Parts>
[[gnu::always_inline]] inline void traceCall(const TraceAt& at, const Parts&... parts) {
  if (at.handle.isOn(at.level)) [[unlikely]]
    Impl::traceWrite(
        at, [](TraceHelper& line) { line.in(); }, parts...);
}

// The line with which a handler opens: the object, the function's signature, the arguments.
template <class Object, class... Args>
[[gnu::always_inline]] inline void traceEntry(const TraceAt& at, const Object& object,
                                              const Args&... args) {
  const auto write = [&](TraceHelper& line) {
    line.in(object) << " ( ";
    [[maybe_unused]] const char* comma = "";
    ((line << comma << args, comma = ", "), ...);
    line << " ) ";
  };
  if (at.handle.isOn(at.level)) [[unlikely]]
    Impl::traceWrite(at, write);
}

}  // namespace Rok
