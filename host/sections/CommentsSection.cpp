// "comments": {"<comment key>": "<text>"}
#include "host/sections/Forms.h"

namespace host {

Section commentsSection() {
  using Cli::Config;
  using Comments = Values<all(&Config::comment), &Config::commentIs, &Config::commentDel>;
  return section(&Native::cliConfig, part<Comments>("comments"));
}

}  // namespace host
