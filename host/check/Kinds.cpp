#include "host/check/Kinds.h"

namespace host {
namespace {

constexpr FindingKind kinds[] = {
    {"form", "the text is no native document"},
    {"refused", "a change line does not apply"},
    {"comment-type", "a value of the wrong type in a comment ends the program that translates it"},
    {"raises", "a translator raises over the value, and its root is left out"},
    {"order", "the result depends on the order in which objects are met"},
    {"unresolved", "the model refers to something that it does not have"},
    {"missing", "what the native object refers to is not there, so a part of the model is absent"},
    {"swept", "each start sweeps it out of the model"},
    {"untranslated", "it is not translated"},
    {"left-out", "no OpenConfig leaf can hold the value or the name"},
    {"families", "IPv4 and IPv6 meet in one classifier"},
    {"other-classifier", "a policy map has a class of another classifier"},
    {"match-option", "a match statement is not known and is taken for another one"},
    {"shadowed", "of several objects that say the same thing one counts"},
    {"false-binding", "a service policy names an interface with the value false"},
    {"unknown-interface", "a service policy binds an interface that is not configured"},
    {"thresholds", "a minimum is above its maximum"},
    {"name-form", "a name is almost of a form that is translated"},
    {"comment-json", "a comment with our metadata is no JSON object"},
    {"comment-case", "the key of the metadata has another case"},
    {"comment-key", "no translator reads a comment under such a key"},
    {"comment-unused", "the interface, tx queue or profile of a comment is not there"},
    {"comment-member", "a member of a comment is not read"},
    {"comment-name", "a name in a comment is missing or empty"},
    {"comment-scheduler", "the key of a scheduler is no number, or two are the same"},
    {"comment-priority", "a priority is read as STRICT, whatever it says"},
    {"comment-percent", "a percentage is cut to 8 bits"},
    {"comment-zero", "a number 0 in a comment is read as none"},
    {"comment-shared", "interfaces of one short name have one comment"},
};

}  // namespace

std::span<const FindingKind> findingKinds() { return kinds; }

}  // namespace host
