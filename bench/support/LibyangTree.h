// The classifiers of a device in a data tree of libyang: the output that our translators write,
// with the terms that ClassMapDevice has.
#pragma once

#include <libyang/libyang.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Bench {

class LibyangTree {
 public:
  // What a term has: its id, as class maps give it, or a DSCP and a target group, too.
  enum class Terms { ids, whole };

  // The schema: the published modules of the folder that OPENCONFIG_YANG_DIR names, or a small one
  // of our own.
  LibyangTree();

  // The terms of so many class maps, by the calls that take a parent, which is at hand. Those of a
  // classifier come one after another: the best case for the tree.
  void buildTyped(std::size_t classMaps, Terms terms);
  // Whole terms, a path for each leaf, in random order.
  void buildByPath(const std::vector<std::string>& paths);

  // The paths of a term's target groups, of all terms in random order.
  std::vector<std::string> groupPaths(std::size_t classMaps) const;
  // Gives a term another group, by its path, or by the leaf. Requires: it has one, not this one.
  void change(const std::string& path, const char* group) const;
  static void change(lyd_node* leaf, const char* group);
  lyd_node* leaf(const std::string& path) const;

  // Keeps a copy of the tree as it stands; the leaves that differ from it, by libyang's diff of the
  // two, list keys and the way to them aside; a change of the copy, like that of the tree.
  void keep();
  std::size_t changedSinceKept() const;
  void changeKept(const std::string& path, const char* group) const;

  // Ends the process unless it has the terms of so many class maps.
  void check(std::size_t classMaps) const;

 private:
  struct ContextDelete {
    void operator()(ly_ctx* context) const { ly_ctx_destroy(context); }
  };
  struct TreeDelete {
    void operator()(lyd_node* tree) const { lyd_free_all(tree); }
  };
  lyd_node* addClassifiers();
  void addTerms(lyd_node* classifier, std::size_t placeholder, Terms terms) const;

  std::unique_ptr<ly_ctx, ContextDelete> context_;
  const lys_module* module_ = nullptr;
  std::unique_ptr<lyd_node, TreeDelete> tree_;
  std::unique_ptr<lyd_node, TreeDelete> kept_;
};

}  // namespace Bench
