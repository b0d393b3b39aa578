// What a leaf costs on its way into an answer of the gNMI server: as bytes straight from its record,
// beside protobuf's objects on an arena that are then serialized. Both make the same frames.
#include <gnmi.pb.h>
#include <google/protobuf/arena.h>

#include <string>
#include <vector>

#include "gnmi/Wire.h"
#include "support/Check.h"
#include "support/Child.h"
#include "support/ClassificationDevice.h"
#include "support/Comparisons.h"
#include "support/OutputModel.h"
#include "support/Seconds.h"
#include "support/Series.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

using Encoding = server::Wire::Encoding;

constexpr std::size_t largestSize = 100'000;
constexpr std::size_t frameSize = 32'768;

// Seconds a leaf.
struct Costs {
  double typed[repetitions];
  double ietf[repetitions];
  double objects[repetitions];
};

struct Frames {
  std::size_t leaves = 0;
  std::size_t bytes = 0;
};

// ===== Straight from the records

Frames written(const host::Model& model, const host::View& view, Encoding encoding) {
  server::Wire wire(view, encoding);
  Frames frames;
  std::string body;
  const auto send = [&] {
    frames.bytes += body.size();
    body.clear();
  };
  host::eachRecord(model, view, [&](const host::RecordAt& at) {
    frames.leaves += wire.updates(body, at, host::allRows);
    if (body.size() >= frameSize) send();
  });
  send();
  return frames;
}

// ===== By protobuf's objects

void addElements(gnmi::Path& path, std::string_view names) {
  while (!names.empty()) path.add_elem()->set_name(std::string(host::takeName(names)));
}

void addEntry(gnmi::Path& path, const host::RecordKind& kind,
              std::span<const std::string_view> keys) {
  const auto above = kind.isList() ? keys.first(keys.size() - 1) : keys;
  if (kind.parent != nullptr) {
    addEntry(path, *kind.parent, above);
  } else {
    path.add_elem()->set_name(std::string(kind.root->name));
  }
  addElements(path, kind.path);
  if (!kind.isList()) return;
  gnmi::PathElem& entry = *path.mutable_elem(path.elem_size() - 1);
  (*entry.mutable_key())[std::string(kind.key)] = std::string(keys.back());
}

void setValue(gnmi::TypedValue& to, const host::LeafValue& value) {
  if (const auto* boolean = std::get_if<bool>(&value)) {
    to.set_bool_val(*boolean);
  } else if (const auto* number = std::get_if<std::uint64_t>(&value)) {
    to.set_uint_val(*number);
  } else if (const auto text = host::textOf(value)) {
    to.set_string_val(std::string(*text));
  } else {
    for (const unsigned element : std::get<std::vector<unsigned>>(value)) {
      to.mutable_leaflist_val()->add_element()->set_uint_val(element);
    }
  }
}

std::size_t add(gnmi::Notification& frame, const host::View& view, const host::RecordAt& at) {
  std::size_t leaves = 0;
  for (const host::View::Row& row : view.rows(at.kind)) {
    const host::LeafValue value = at.kind.read(at.record, row.leaf, at.keys, {});
    if (host::isAbsent(value)) continue;
    gnmi::Update& update = *frame.add_update();
    addEntry(*update.mutable_path(), at.kind, at.keys);
    addElements(*update.mutable_path(), row.path);
    setValue(*update.mutable_val(), value);
    ++leaves;
  }
  return leaves;
}

Frames serialized(const host::Model& model, const host::View& view) {
  constexpr int updatesInAFrame = 300;  // some 32 KB
  // Room for a frame, so that none goes back to the system between frames.
  std::vector<char> room(16 * frameSize);
  google::protobuf::ArenaOptions options;
  options.initial_block = room.data();
  options.initial_block_size = room.size();
  google::protobuf::Arena arena(options);
  auto* frame = google::protobuf::Arena::CreateMessage<gnmi::Notification>(&arena);
  Frames frames;
  const auto send = [&] {
    frames.bytes += frame->SerializeAsString().size();
    arena.Reset();
    frame = google::protobuf::Arena::CreateMessage<gnmi::Notification>(&arena);
  };
  host::eachRecord(model, view, [&](const host::RecordAt& at) {
    frames.leaves += add(*frame, view, at);
    if (frame->update_size() >= updatesInAFrame) send();
  });
  send();
  return frames;
}

// ===== All ways, on one device

template <class Make>
double perLeaf(const Make& make, const Frames& expected) {
  const double start = threadSeconds();
  const Frames made = make();
  const double seconds = threadSeconds() - start;
  require(made.leaves == expected.leaves && made.leaves > 0, "the leaves of all frames");
  require(expected.bytes == 0 || made.bytes == expected.bytes, "the bytes of all frames");
  return seconds / static_cast<double>(made.leaves);
}

Costs costs(std::size_t classMaps) {
  ClassificationDevice device(classMaps);
  device.start();
  const host::Model model = outputOf(device);
  const host::View view;
  const Frames typed = written(model, view, Encoding::proto);
  Costs costs{};
  for (std::size_t i = 0; i < repetitions; ++i) {
    costs.typed[i] = perLeaf([&] { return written(model, view, Encoding::proto); }, typed);
    costs.ietf[i] =
        perLeaf([&] { return written(model, view, Encoding::jsonIetf); }, {typed.leaves, 0});
    costs.objects[i] = perLeaf([&] { return serialized(model, view); }, typed);
  }
  return costs;
}

constexpr const char* typed = "leaf into a frame, PROTO";
constexpr const char* ietf = "leaf into a frame, JSON_IETF";
constexpr const char* objects = "leaf into a frame, protobuf objects";

}  // namespace

void frames(Comparisons& comparisons) {
  comparisons.subject("Frames of the gNMI server");
  for (const std::size_t size : sizes()) {
    if (size > largestSize) continue;
    registerTogether({typed, ietf, objects}, size, [=] {
      const Costs all = inChild<costs>(size);
      Measured measured;
      const auto add = [&](const char* name, const double* seconds) {
        measured[at(name, size)].seconds = {seconds, seconds + repetitions};
      };
      add(typed, all.typed);
      add(ietf, all.ietf);
      add(objects, all.objects);
      return measured;
    });
    comparisons.add(at(ietf, size), at(typed, size));
    comparisons.add(at(objects, size), at(typed, size));
  }
}

}  // namespace Bench
