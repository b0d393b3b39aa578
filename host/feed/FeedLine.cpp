#include "host/feed/FeedLine.h"

#include <ctime>
#include <iomanip>
#include <random>
#include <sstream>

namespace host {

void writeChanges(JsonWriter& out, const std::vector<std::string>& deleted,
                  const std::function<void()>& updates) {
  out.key("delete");
  out.beginArray();
  for (const std::string& node : deleted) out.text(node);
  out.endArray();
  out.key("update");
  out.beginObject();
  updates();
  out.endObject();
}

std::string feedLine(const FeedHead& head, const LeafChanges& changes, const TextSink& sink) {
  JsonWriter out(Layout::compact, sink);
  out.beginObject();
  out.key("line");
  out.number(head.line);
  if (!head.epoch.empty()) {
    out.key("epoch");
    out.text(head.epoch);
  }
  if (head.isRefused) {
    out.key("refused");
    out.boolean(true);
  }
  writeChanges(out, changes.deleted, [&] {
    for (const LeafUpdate& leaf : changes.updated) {
      out.key(leaf.path);
      writeLeaf(out, leaf.type, leaf.value);
    }
  });
  out.endObject();
  return out.take();
}

std::string newEpoch() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  std::ostringstream text;
  text << std::put_time(&utc, "%Y-%m-%dT%H:%M:%SZ-") << std::hex << std::setfill('0');
  std::random_device random;
  for (int i = 0; i < 2; ++i) text << std::setw(8) << random();
  return text.str();
}

}  // namespace host
