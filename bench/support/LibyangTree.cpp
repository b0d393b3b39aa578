#include "support/LibyangTree.h"

#include <cstdlib>

#include "support/Check.h"
#include "support/ClassMapDevice.h"
#include "support/Order.h"

namespace Bench {
namespace {

constexpr std::size_t classMapsOfClassifier = 10;
constexpr const char* firstGroup = "group-0";
constexpr const char* dscp = "46";

void checked(LY_ERR error, const char* what) { require(error == LY_SUCCESS, what); }

lyd_node* inner(lyd_node* parent, const char* name) {
  lyd_node* node = nullptr;
  checked(lyd_new_inner(parent, nullptr, name, 0, &node), name);
  return node;
}
void leafOf(lyd_node* parent, const char* name, const std::string& value) {
  checked(lyd_new_term(parent, nullptr, name, value.c_str(), 0, nullptr), name);
}
lyd_node* entry(lyd_node* parent, const char* name, const std::string& key) {
  lyd_node* node = nullptr;
  checked(lyd_new_list(parent, nullptr, name, 0, &node, key.c_str()), name);
  return node;
}

std::size_t count(const lyd_node* list) {
  std::size_t result = 0;
  for (const lyd_node* node = list; node != nullptr; node = node->next) {
    if (node->schema == list->schema) ++result;
  }
  return result;
}

void changeIn(lyd_node* tree, const std::string& path, const char* group) {
  lyd_node* changed = nullptr;
  checked(lyd_new_path(tree, nullptr, path.c_str(), group, LYD_NEW_PATH_UPDATE, &changed),
          "a change by path");
  require(changed != nullptr, "nothing was changed by path");
}

// Those that are no list key.
std::size_t leavesBelow(const lyd_node* node) {
  if ((node->schema->nodetype & LYS_LEAF) != 0) return lysc_is_key(node->schema) ? 0 : 1;
  std::size_t result = 0;
  for (const lyd_node* child = lyd_child(node); child != nullptr; child = child->next) {
    result += leavesBelow(child);
  }
  return result;
}

}  // namespace

LibyangTree::LibyangTree() {
  const char* published = std::getenv("OPENCONFIG_YANG_DIR");
  ly_ctx* context = nullptr;
  checked(ly_ctx_new(published != nullptr ? published : QOS_BENCH_DIR,
                     LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIR_CWD, &context),
          "a context of libyang");
  context_.reset(context);
  if (published != nullptr) {
    ly_ctx_load_module(context, "openconfig-qos-types", nullptr, nullptr);
    module_ = ly_ctx_load_module(context, "openconfig-qos", nullptr, nullptr);
  } else {
    module_ = ly_ctx_load_module(context, "bench-qos", nullptr, nullptr);
  }
  require(module_ != nullptr, "the modules that OPENCONFIG_YANG_DIR names can't be loaded");
}

lyd_node* LibyangTree::addClassifiers() {
  lyd_node* root = nullptr;
  checked(lyd_new_inner(nullptr, module_, "qos", 0, &root), "qos");
  tree_.reset(root);
  return inner(root, "classifiers");
}

void LibyangTree::buildTyped(std::size_t classMaps, Terms terms) {
  lyd_node* classifiers = addClassifiers();
  for (std::size_t number = 0; number < classMaps; number += classMapsOfClassifier) {
    const std::string name = classifierName(number);
    lyd_node* classifier = entry(classifiers, "classifier", name);
    lyd_node* config = inner(classifier, "config");
    leafOf(config, "name", name);
    leafOf(config, "type", "IPV4");
    addTerms(classifier, number, terms);
  }
}

void LibyangTree::addTerms(lyd_node* classifier, std::size_t placeholder, Terms terms) const {
  lyd_node* parent = inner(classifier, "terms");
  for (std::size_t n = placeholder + 1; n < placeholder + classMapsOfClassifier; ++n) {
    const std::string id = termName(n);
    lyd_node* term = entry(parent, "term", id);
    leafOf(inner(term, "config"), "id", id);
    if (terms == Terms::ids) continue;
    leafOf(inner(inner(inner(term, "conditions"), "ipv4"), "config"), "dscp", dscp);
    leafOf(inner(inner(term, "actions"), "config"), "target-group", firstGroup);
  }
}

void LibyangTree::buildByPath(const std::vector<std::string>& paths) {
  const std::string groupPart = "/actions/config/target-group";
  const auto add = [&](const std::string& path, const std::string& value) {
    lyd_node* node = nullptr;
    checked(lyd_new_path(tree_.get(), context_.get(), path.c_str(), value.c_str(), 0, &node),
            "a path");
    if (!tree_) tree_.reset(node);
  };
  for (const std::string& path : paths) {
    const std::string term = path.substr(0, path.size() - groupPart.size());
    const std::size_t id = path.rfind("[id='") + sizeof("[id='") - 1;
    add(path, firstGroup);
    add(term + "/config/id", term.substr(id, term.size() - id - (sizeof("']") - 1)));
    add(term + "/conditions/ipv4/config/dscp", dscp);
  }
}

std::vector<std::string> LibyangTree::groupPaths(std::size_t classMaps) const {
  Random random(3);
  std::vector<std::string> result;
  const std::string root = std::string("/") + module_->name + ":qos/classifiers/classifier[name='";
  for (const std::size_t number : shuffledTerms(classMaps, random)) {
    result.push_back(root + classifierName(number) + "']/terms/term[id='" + termName(number) +
                     "']/actions/config/target-group");
  }
  return result;
}

void LibyangTree::change(const std::string& path, const char* group) const {
  changeIn(tree_.get(), path, group);
}

void LibyangTree::change(lyd_node* leaf, const char* group) {
  checked(lyd_change_term(leaf, group), "a change of a leaf");
}

lyd_node* LibyangTree::leaf(const std::string& path) const {
  lyd_node* found = nullptr;
  checked(lyd_find_path(tree_.get(), path.c_str(), 0, &found), "a leaf");
  return found;
}

void LibyangTree::keep() {
  lyd_node* copy = nullptr;
  checked(lyd_dup_siblings(tree_.get(), nullptr, LYD_DUP_RECURSIVE, &copy), "a copy of a tree");
  kept_.reset(copy);
}

std::size_t LibyangTree::changedSinceKept() const {
  lyd_node* found = nullptr;
  checked(lyd_diff_siblings(kept_.get(), tree_.get(), 0, &found), "a diff of two trees");
  const std::unique_ptr<lyd_node, TreeDelete> diff(found);
  std::size_t result = 0;
  for (const lyd_node* node = found; node != nullptr; node = node->next) {
    result += leavesBelow(node);
  }
  return result;
}

void LibyangTree::changeKept(const std::string& path, const char* group) const {
  changeIn(kept_.get(), path, group);
}

void LibyangTree::check(std::size_t classMaps) const {
  const lyd_node* classifiers = lyd_child(tree_.get());
  const lyd_node* first = lyd_child(classifiers);
  require(count(first) == classMaps / classMapsOfClassifier, "number of classifiers in the tree");
  for (const lyd_node* node = first; node != nullptr; node = node->next) {
    const lyd_node* terms = nullptr;
    for (const lyd_node* child = lyd_child(node); child != nullptr; child = child->next) {
      if (std::string(child->schema->name) == "terms") terms = child;
    }
    require(terms != nullptr && count(lyd_child(terms)) == classMapsOfClassifier - 1,
            "number of terms in the tree");
  }
}

}  // namespace Bench
