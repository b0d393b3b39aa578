#include "support/NativeDocument.h"

#include <rapidjson/filewritestream.h>
#include <rapidjson/writer.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>

#include "support/Check.h"

namespace Bench {
namespace {

constexpr std::size_t termsOfCustomer = 9;
constexpr std::size_t txQueuesOfInterface = 8;
constexpr std::size_t customersOfProfile = 100;

std::string numbered(const char* format, std::size_t number) {
  char text[40];
  std::snprintf(text, sizeof(text), format, number);
  return text;
}

std::string classifier(std::size_t customer) { return numbered("edge-in-%05zu", customer); }
std::string term(std::size_t number) { return numbered("voice-%02zu", number); }
std::string classMap(std::size_t customer, const std::string& term) {
  return "__yang_[" + classifier(customer) + "]_[" + term + "]";
}
std::string policyMap(std::size_t customer) {
  return "__yang_[IPV4__" + classifier(customer) + "]";
}
// Forty-eight ports a line card.
std::string slotAndPort(std::size_t customer) {
  return std::to_string(3 + customer / 48) + '/' + std::to_string(1 + customer % 48);
}
std::string interface(std::size_t customer) { return "Ethernet" + slotAndPort(customer); }
std::string schedulerPolicy(std::size_t customer) {
  return numbered("sp-core-%03zu", customer / customersOfProfile);
}
std::string queueManagementProfile(std::size_t customer) {
  return numbered("qmp-wred-%03zu", customer / customersOfProfile);
}
std::string attachment(std::size_t customer) {
  return R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":")" + schedulerPolicy(customer) +
         R"("},"queue-management-profile":{"name":")" + queueManagementProfile(customer) +
         R"("}}})";
}
std::string schedulers() {
  std::string result = R"({"MetaData-OpenConfig":{)";
  for (std::size_t queue = 0; queue < txQueuesOfInterface; ++queue) {
    char scheduler[96];
    std::snprintf(scheduler, sizeof(scheduler),
                  R"(%s"%zu":{"inputs":{"in-%zu":{"queue":"queue-%zu","weight":%zu}}})",
                  queue == 0 ? "" : ",", queue + 1, queue, queue, 10 + queue);
    result += scheduler;
  }
  return result + "}}";
}

// ===== One section after the other, for all customers

class DocumentWriter {
 public:
  DocumentWriter(std::FILE* file, std::size_t customers)
      : stream_(file, block_, sizeof(block_)), json_(stream_), customers_(customers) {}

  void write() {
    json_.StartObject();
    classMaps();
    accessLists();
    policyMaps();
    servicePolicies();
    interfaces();
    profiles();
    comments();
    names();
    json_.EndObject();
    stream_.Flush();
  }

 private:
  void key(std::string_view name) {
    json_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
  }
  void text(std::string_view value) {
    json_.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  }
  template <class Body>
  void object(std::string_view name, const Body& body) {
    key(name);
    json_.StartObject();
    body();
    json_.EndObject();
  }
  void number(std::string_view name, std::size_t value) {
    key(name);
    json_.Uint64(value);
  }
  template <class Each>
  void eachCustomer(const Each& each) {
    for (std::size_t customer = 0; customer < customers_; ++customer) each(customer);
  }
  // For every profile, the first customer that uses it.
  template <class Each>
  void eachProfile(const Each& each) {
    for (std::size_t first = 0; first < customers_; first += customersOfProfile) each(first);
  }

  void classMaps() {
    object("class-maps", [&] {
      object("qos", [&] {
        eachCustomer([&](std::size_t customer) {
          oneClassMap(classMap(customer, ""));
          for (std::size_t n = 1; n <= termsOfCustomer; ++n) {
            oneClassMap(classMap(customer, term(n)));
          }
        });
      });
    });
  }
  void oneClassMap(const std::string& name) {
    object(name, [&] {
      key("match");
      json_.StartArray();
      text("ip-access-group");
      json_.EndArray();
    });
  }

  void accessLists() {
    object("access-lists", [&] {
      object("ipv4", [&] {
        eachCustomer([&](std::size_t customer) {
          for (std::size_t n = 1; n <= termsOfCustomer; ++n) {
            object(classMap(customer, term(n)), [&] { rules(customer + n); });
          }
        });
      });
    });
  }
  void rules(std::size_t seed) {
    object("rules", [&] {
      for (std::size_t rule = 1; rule <= 1 + seed % 3; ++rule) {
        object(std::to_string(10 * rule), [&] { number("dscp", (seed + 7 * rule) % 64); });
      }
    });
  }

  void policyMaps() {
    object("policy-maps", [&] {
      object("qos", [&] {
        eachCustomer([&](std::size_t customer) {
          object(policyMap(customer), [&] { object("classes", [&] { classes(customer); }); });
        });
      });
    });
  }
  void classes(std::size_t customer) {
    for (std::size_t n = 1; n <= termsOfCustomer; ++n) {
      object(classMap(customer, term(n)),
             [&] { object("actions", [&] { number("set-traffic-class", n % 8); }); });
    }
  }

  void servicePolicies() {
    object("service-policies", [&] {
      eachCustomer([&](std::size_t customer) {
        object("1:" + policyMap(customer), [&] {
          object("interfaces", [&] {
            key(interface(customer));
            json_.Bool(true);
          });
        });
      });
    });
  }

  void interfaces() {
    object("interfaces", [&] {
      eachCustomer([&](std::size_t customer) {
        object(interface(customer), [&] {
          object("tx-queues", [&] {
            for (std::size_t queue = 0; queue < txQueuesOfInterface; ++queue) txQueue(queue);
          });
          object("pfc", [&] { number("priorities", 8); });
        });
      });
    });
  }
  void txQueue(std::size_t queue) {
    object("uc-" + std::to_string(queue), [&] {
      if (queue == 7) {
        key("priority");
        text("strict");
      }
      number("bandwidth", 5 + queue);
      if (queue >= 2) return;
      object("ecn", [&] { thresholds(1000 * (queue + 1)); });
    });
  }
  void thresholds(std::size_t min) {
    number("min-threshold", min);
    number("max-threshold", 3 * min);
    number("max-drop-percent", 30);
  }

  void profiles() {
    object("qos-profiles", [&] {
      eachProfile([&](std::size_t customer) {
        object("__YANG_SP_[" + schedulerPolicy(customer) + "]", [] {});
        object("__YANG_QMP_[" + queueManagementProfile(customer) + "]",
               [&] { object("tx-queues", [&] { txQueue(0); }); });
      });
    });
  }

  void comments() {
    object("comments", [&] {
      const std::string policy = schedulers();
      eachProfile([&](std::size_t customer) {
        key("qos-profile-__YANG_SP_[" + schedulerPolicy(customer) + "]");
        text(policy);
      });
      eachCustomer([&](std::size_t customer) {
        const std::string comment = attachment(customer);
        for (std::size_t queue = 0; queue < txQueuesOfInterface; ++queue) {
          key("if-Et" + slotAndPort(customer) + "-uc-txq-" + std::to_string(queue));
          text(comment);
        }
      });
    });
  }

  void names() {
    for (const auto& [section, name] :
         {std::pair{"forwarding-groups", "group-"}, std::pair{"queue-names", "queue-"},
          std::pair{"tc-to-tx-queue", ""}}) {
      object(section, [&] {
        for (std::size_t n = 0; n < txQueuesOfInterface; ++n) number(name + std::to_string(n), n);
      });
    }
  }

  char block_[std::size_t{64} * 1024];
  rapidjson::FileWriteStream stream_;
  rapidjson::Writer<rapidjson::FileWriteStream> json_;
  std::size_t customers_;
};

std::uint64_t writeCustomers(const std::string& path, std::size_t customers) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"),
                                                             &std::fclose);
  require(file != nullptr, "cannot write " + path);
  DocumentWriter(file.get(), customers).write();
  require(std::fflush(file.get()) == 0, "cannot write " + path);
  return std::filesystem::file_size(path);
}

}  // namespace

std::uint64_t writeNativeDocument(const std::string& path, std::uint64_t bytes) {
  constexpr std::size_t few = 1000;
  return writeCustomers(path, bytes * few / writeCustomers(path, few));
}

}  // namespace Bench
