// The readers of both kinds of comment. They read what a document of all of the text would give,
// and what they read, they write, and read back the same. A value of the wrong type must end the
// process, and no other text may: host/CommentFaults.h says which it is to be, and a text that must
// end it is read in a child.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Fuzz.h"
#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "host/CommentFaults.h"
#include "tests/support/CommentByDocument.h"

namespace {

// Runs `read` in a child, which must end by abort().
template <class Read>
void requireAbort(const Read& read) {
  const pid_t child = fork();
  Fuzz::require(child >= 0, "no child to be had");
  if (child == 0) {
    signal(SIGABRT, SIG_DFL);
    close(STDERR_FILENO);
    read();
    _exit(0);
  }
  int status = 0;
  Fuzz::require(waitpid(child, &status, 0) == child, "the child is lost");
  Fuzz::require(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT,
                "a value of the wrong type was accepted");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Velmo::String comment(Fuzz::text(data, size));
  if (host::attachmentFault(comment)) {
    requireAbort([&] { deserializeJsonComment(comment); });
  } else {
    const QosOc::CommentInfo info = deserializeJsonComment(comment);
    Fuzz::require(info == support::attachmentByDocument(comment).info,
                  "an attachment reads differently from its document");
    Fuzz::require(deserializeJsonComment(serializeJsonComment(info)) == info,
                  "an attachment that was read and written reads differently");
  }
  if (host::profileFault(comment)) {
    requireAbort([&] { deserializeJsonProfileComment(comment); });
  } else {
    const auto info = deserializeJsonProfileComment(comment);
    Fuzz::require(info == support::profileByDocument(comment).info,
                  "a profile reads differently from its document");
    Fuzz::require(deserializeJsonProfileComment(serializeJsonProfileComment(info)) == info,
                  "a profile that was read and written reads differently");
  }
  return 0;
}
