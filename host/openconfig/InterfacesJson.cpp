// /qos/interfaces
#include "host/Text.h"
#include "host/openconfig/Lists.h"

namespace host {
namespace {

using namespace QosOc::Config;

// One interface.
class InterfaceJson {
 public:
  InterfaceJson(Tree& tree, std::string_view interface) : tree_(tree), interface_(interface) {}

  void write(const Interface& interface) {
    tree_.container("config", [&] { tree_.word("interface-id", interface_); });
    if (interface.input() && interface.input()->classifiers()) {
      tree_.container("input", [&] { classifiers(*interface.input()->classifiers()); });
    }
    tree_.word("interface-id", interface_);
    if (!interface.output()) return;
    tree_.container("output", [&] { output(*interface.output()); });
  }

 private:
  void classifiers(const InterfaceInputClassifiers& classifiers) {
    tree_.list("classifiers", "classifier", [&] {
      for (const auto& [type, entry] : sorted(classifiers.classifier())) classifier(type, *entry);
    });
  }
  void classifier(const std::string& type, const InterfaceInputClassifier& classifier) {
    const auto native = [&] { return "a service policy of " + shownInterface(); };
    const char* word = classifierTypeName(classifier.type);
    if (word == nullptr) {
      return tree_.entryLeftOut("type", type, type + " is no type of a classifier", native());
    }
    tree_.entry("type", word, native, [&] {
      tree_.container("config", [&] {
        tree_.name("name", classifier.config.name, native);
        tree_.word("type", word);
      });
      tree_.word("type", word);
    });
  }

  void output(const InterfaceOutput& output) {
    tree_.container("qosoc-augments:pfc", [&] {
      tree_.container("config", [&] {
        prioritiesJson(tree_, output.pfc().priorities, "the PFC settings of " + shownInterface());
      });
    });
    if (output.queues()) {
      tree_.list("queues", "queue", [&] {
        for (const auto& [name, entry] : sorted(output.queues()->q())) queue(name, *entry);
      });
    }
    if (!output.schedulerPolicy()) return;
    tree_.container("scheduler-policy", [&] {
      tree_.container("config", [&] {
        tree_.name("name", output.schedulerPolicy()->config.name,
                   [&] { return "a comment on a tx queue of " + shownInterface(); });
      });
    });
  }
  // A blanked attachment is bookkeeping: the records can't be removed.
  void queue(std::string_view name, const InterfaceOutputQueue& queue) {
    if (queue.config == InterfaceOutputQueueConfig()) return;
    const auto native = [&] { return "the queue name " + quoted(name); };
    tree_.entry("name", name, native, [&] {
      tree_.container("config", [&] {
        tree_.word("name", name);
        tree_.name("queue-management-profile", queue.config.queueManagementProfile, [&] {
          return "the comment on the tx queue " + quoted(name) + " of " + shownInterface();
        });
      });
      tree_.word("name", name);
    });
  }

  std::string shownInterface() const { return "the interface " + quoted(interface_); }

  Tree& tree_;
  std::string_view interface_;
};

}  // namespace

void interfacesJson(Tree& tree, const InterfacesDir& dir) {
  tree.list(
      "interfaces", "interface", "interface-id", dir.interface(),
      [](std::string_view name) { return "the interface " + quoted(name); },
      [&](std::string_view name, const auto& interface) {
        InterfaceJson(tree, name).write(*interface);
      });
}

}  // namespace host
