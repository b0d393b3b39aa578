// How comments name the metadata that stands for OpenConfig, and how they nearly do.
#pragma once

#include <string_view>

#include "host/CommentDocument.h"

namespace host {

// The members of the metadata of a tx queue.
inline constexpr std::string_view attachmentParts[] = {"scheduler-policy",
                                                       "queue-management-profile"};

bool isAttachmentPart(std::string_view name);

// Whether a member of a comment was probably meant to be the metadata: by its name, or by half of
// that and what is in it.
bool isNearlyMetaData(std::string_view name, const rapidjson::Value& value);

// What a text that is no JSON object has of the metadata: its key, also in another case, or a member
// that is nearly the key or a part of the metadata. Empty for a text of other origin.
std::string_view metaDataWord(std::string_view text);

}  // namespace host
