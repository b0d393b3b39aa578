#include "gnmi/Elements.h"

#include <gnmi.pb.h>

#include <algorithm>

#include "gnmi/Refused.h"
#include "host/Text.h"

namespace server {
namespace {

using host::quoted;

constexpr std::string_view ourOrigin = "openconfig";

[[noreturn]] void refuse(const std::string& field, const std::string& reason) {
  throw Refused(grpc::StatusCode::INVALID_ARGUMENT, field + ": " + reason);
}

void checkOrigin(const gnmi::Path& path, const std::string& field) {
  if (path.origin().empty() || path.origin() == ourOrigin) return;
  throw Refused(grpc::StatusCode::UNIMPLEMENTED,
                field + ".origin: " + quoted(path.origin()) + " is not served, \"openconfig\" is");
}

void checkHeads(const Path::Asked& asked, const std::string& field) {
  checkOrigin(asked.prefix, "prefix");
  checkOrigin(asked.path, field);
  if (!asked.prefix.origin().empty() && !asked.path.origin().empty()) {
    refuse(field + ".origin", "the prefix has one, too");
  }
  if (!asked.path.target().empty()) refuse(field + ".target", "a prefix alone has a target");
}

// One element of the deprecated form, "queue[name=q]".
class ElementText {
 public:
  ElementText(std::string_view text, std::string field) : rest_(text) {
    element_.field = std::move(field);
  }

  Element read() {
    element_.name = rest_.substr(0, rest_.find('['));
    rest_.remove_prefix(element_.name.size());
    while (!rest_.empty()) key();
    std::sort(element_.keys.begin(), element_.keys.end());
    return std::move(element_);
  }

 private:
  void key() {
    const std::size_t equals = rest_.find('=');
    if (rest_.front() != '[' || equals == std::string_view::npos) {
      refuse(element_.field, "expected [KEY=VALUE], not " + quoted(rest_));
    }
    std::string name(rest_.substr(1, equals - 1));
    rest_.remove_prefix(equals + 1);
    element_.keys.emplace_back(std::move(name), value());
  }
  // Up to the bracket that closes. A `\` stands before what is meant as it is.
  std::string value() {
    std::string value;
    while (!rest_.empty() && rest_.front() != ']') {
      if (rest_.front() == '\\') rest_.remove_prefix(1);
      if (rest_.empty()) break;
      value += rest_.front();
      rest_.remove_prefix(1);
    }
    if (rest_.empty()) refuse(element_.field, "a \"]\" is missing");
    rest_.remove_prefix(1);
    return value;
  }

  std::string_view rest_;
  Element element_;
};

Element elementOf(const gnmi::PathElem& elem, std::string field) {
  Element element{std::move(field), elem.name()};
  for (const auto& [name, value] : elem.key()) element.keys.emplace_back(name, value);
  std::sort(element.keys.begin(), element.keys.end());
  return element;
}

bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '_' || c == '.';
}

// An identifier, or two of them with a colon between.
bool isName(std::string_view name) {
  const std::size_t colon = name.find(':');
  if (colon != std::string_view::npos) {
    return isName(name.substr(0, colon)) && name.find(':', colon + 1) == std::string_view::npos &&
           isName(name.substr(colon + 1));
  }
  return !name.empty() && std::all_of(name.begin(), name.end(), isNameCharacter);
}

void check(const Element& element) {
  if (element.isAnyNumber() && !element.keys.empty()) {
    refuse(element.field + ".key", "\"...\" has no key");
  }
  if (element.isAnyOne() || element.isAnyNumber() || isName(element.name)) return;
  refuse(element.field + ".name",
         element.name.empty() ? "it is empty" : quoted(element.name) + " is no name");
}

void append(std::vector<Element>& elements, const gnmi::Path& path, const std::string& field) {
  const auto numbered = [&](const char* list, int i) {
    return field + '.' + list + '[' + std::to_string(i) + ']';
  };
  for (int i = 0; i < path.elem_size(); ++i) {
    elements.push_back(elementOf(path.elem(i), numbered("elem", i)));
  }
  if (path.elem_size() != 0) return;
  for (int i = 0; i < path.element_size(); ++i) {
    elements.push_back(ElementText(path.element(i), numbered("element", i)).read());
  }
}

// Clients that leave the text of a path to the server send the origin as they got it.
void dropOrigin(std::vector<Element>& elements) {
  if (elements.empty()) return;
  std::string& name = elements.front().name;
  if (!name.starts_with(ourOrigin) || name.find(':') != ourOrigin.size()) return;
  name.erase(0, ourOrigin.size() + 1);
  if (name.empty() && elements.front().keys.empty()) elements.erase(elements.begin());
}

}  // namespace

std::vector<Element> elementsOf(const Path::Asked& asked) {
  const std::string field(asked.field);
  checkHeads(asked, field);
  std::vector<Element> elements;
  append(elements, asked.prefix, "prefix");
  append(elements, asked.path, field);
  dropOrigin(elements);
  for (const Element& element : elements) check(element);
  return elements;
}

}  // namespace server
