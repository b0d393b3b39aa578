// What a comment nearly says: metadata that its reader passes over or takes for something else.
//
// A comment that is no metadata, and doesn't look like it, has no finding: comments of other origin
// share the store. Values of the wrong type, which end the process, are in CommentFaults.h.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace host {

// Is called with a kind and a text for each finding.
using CommentFindings = std::function<void(std::string_view kind, std::string text)>;

// Whether a text is metadata, or was probably meant to be.
bool isMeantAsMetaData(std::string_view text);

// A text that is read as the comment of a tx queue, or of the profile of a scheduler policy.
void judgeAttachmentText(std::string_view text, const CommentFindings& findings);
void judgeProfileText(std::string_view text, const CommentFindings& findings);

}  // namespace host
