// The parsers of the comment values' text forms: they refuse a text with a range exception, or read
// a value whose text is read again as the same.
#include "Fuzz.h"
#include "QosOpenConfig/QosOpenConfigTypes.h"
#include "Rok/Rok.h"

namespace {

template <class Value>
void readAndWrite(const Rok::String& text) {
  try {
    const Value value = Rok::strepToValue<Value>(text);
    Fuzz::require(Rok::strepToValue<Value>(valueToStrep(value)) == value,
                  "a value that was read and written reads differently");
  } catch (const Rok::RangeException&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Rok::String text(Fuzz::text(data, size));
  readAndWrite<QosOc::SchedulerInputCommentInfo>(text);
  readAndWrite<QosOc::OneRateTwoColorCommentInfo>(text);
  readAndWrite<QosOc::SchedulerPolicyCommentInfo>(text);
  readAndWrite<QosOc::QueueManagementProfileCommentInfo>(text);
  readAndWrite<QosOc::CommentInfo>(text);
  return 0;
}
