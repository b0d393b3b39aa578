// What decoding a comment asks of the heap. Counted in malloc itself, since that is where RapidJSON
// goes; the sanitizers have a malloc of their own.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <string>

#include "QosOpenConfig/QosOpenConfigHelper.h"

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)

namespace {

std::size_t allocations = 0;  // calls of malloc, calloc and realloc

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) noexcept {
  ++allocations;
  return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  ++allocations;
  return __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) noexcept {
  ++allocations;
  return __libc_realloc(block, size);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace QosOc {
namespace {

// A profile document of so many schedulers with so many inputs each.
Rok::String profileDocument(std::uint32_t schedulers, std::uint32_t inputs) {
  SchedulerPolicyProfileCommentInfo info("");
  for (std::uint32_t sequence = 1; sequence <= schedulers; ++sequence) {
    SchedulerCommentInfo scheduler(sequence);
    scheduler.priorityIs(STRICT);
    scheduler.oneRateTwoColorIs(OneRateTwoColorCommentInfo(1000000000, 40));
    for (std::uint32_t n = 0; n < inputs; ++n) {
      SchedulerInputCommentInfo input("input-" + std::to_string(n));
      input.qIs("queue-of-traffic-class-" + std::to_string(n));
      input.weightIs(30);
      scheduler.inputsIs(input);
    }
    info.schedulersIs(scheduler);
  }
  return serializeJsonProfileComment(info);
}

// The allocations of a second decoding: the first one fills the slabs for good.
template <class Decode>
std::size_t allocationsOf(const Decode& decode, const Rok::String& comment) {
  static_cast<void>(decode(comment));
  const std::size_t before = allocations;
  static_cast<void>(decode(comment));
  return allocations - before;
}

TEST(CommentHeap, AnAttachmentDocumentTakesNothing) {
  const Rok::String comment = serializeJsonComment(
      {SchedulerPolicyCommentInfo("scheduler-policy-of-the-edge"),
       QueueManagementProfileCommentInfo("queue-management-\"profile\"-of-the-edge\n")});
  EXPECT_EQ(allocationsOf(deserializeJsonComment, comment), 0u);
}

TEST(CommentHeap, AProfileDocumentOfOrdinarySizeTakesNothing) {
  for (const std::uint32_t schedulers : {0u, 1u, 8u}) {
    for (const std::uint32_t inputs : {0u, 1u, 8u}) {
      EXPECT_EQ(allocationsOf(deserializeJsonProfileComment, profileDocument(schedulers, inputs)),
                0u)
          << schedulers << " schedulers of " << inputs << " inputs";
    }
  }
}

TEST(CommentHeap, ForeignTextTakesNothing) {
  for (const char* text : {"", "hello", "[1]", R"({"other":1})"}) {
    EXPECT_EQ(allocationsOf(deserializeJsonComment, text), 0u) << text;
    EXPECT_EQ(allocationsOf(deserializeJsonProfileComment, text), 0u) << text;
  }
}

TEST(CommentHeap, WhatOutgrowsTheBuffersTakesTheHeap) {
  EXPECT_GT(allocationsOf(deserializeJsonProfileComment, profileDocument(64, 64)), 0u);
}

}  // namespace
}  // namespace QosOc

#endif
