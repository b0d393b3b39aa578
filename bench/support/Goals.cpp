#include "support/Goals.h"

#include <algorithm>
#include <optional>

#include "support/EventKinds.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

enum class Goal {
  ratioAtMost,     // own figure to what it is compared with
  timesFaster,     // the compared figure to the own, at least
  valueAtMost,     // own figure
  withinEitherWay  // own to the compared one, or the other way round
};

struct Pair {
  std::string own;
  std::string rival;
};

struct Claim {
  std::string what;
  std::vector<Pair> pairs;
  Goal goal;
  double limit;
  std::string why = {};  // it isn't met, as far as is known
};

// ===== The figures that a claim is about

// The same figures at every size: "/*" is the size.
std::string sized(const std::string& name, std::size_t size) {
  const std::size_t star = name.find('*');
  if (star == std::string::npos) return name;
  return name.substr(0, star) + std::to_string(size) + name.substr(star + 1);
}

std::vector<Pair> everySize(const std::string& own, const std::string& rival = "") {
  std::vector<Pair> pairs;
  for (const std::size_t size : sizes()) pairs.push_back({sized(own, size), sized(rival, size)});
  return pairs;
}

template <class Pairs>
void append(std::vector<Pair>& all, const Pairs& more) {
  all.insert(all.end(), more.begin(), more.end());
}

// ===== The table

// Why an event takes more time, and more instructions, than it should.
struct Reasons {
  std::string time;
  std::string instructions;
};
Reasons reasonsOf(const std::string& event) {
  const std::string objects =
      "The floor reads one record. The event also reads the native object and the machine, each a "
      "cache miss on a large device.";
  if (event == "class-map-match") {
    return {"The match makes a term. The floor's record is there already.",
            "An entry of a native set comes, and a term of the classifier."};
  }
  if (event == "acl-rule-add") {
    return {
        "A rule is two native entries, one for its identity and one for its place; the floor's "
        "record is there already.",
        "Two native entries come, each with a notification, and the term's set of DSCPs grows."};
  }
  if (event == "traffic-class-remap") {
    return {
        "Up to sixteen watches of the traffic classes are called. The time doesn't grow with "
        "the device, and the floor's does.",
        "Up to sixteen watches of the traffic classes are called."};
  }
  return {objects, ""};
}

void eventClaims(std::vector<Claim>& claims) {
  for (const std::string name : oneRecordEvents) {
    claims.push_back({name + " beside the floor",
                      everySize("event " + name + "/*", "event " + name + "/* floor"),
                      Goal::ratioAtMost, 2.5, reasonsOf(name).time});
  }
  for (const std::string name : oneRecordEvents) {
    claims.push_back({"instructions of " + name, everySize("instructions " + name + "/*"),
                      Goal::valueAtMost, 500, reasonsOf(name).instructions});
  }
  std::vector<Pair> flat;
  std::vector<Pair> allocations;
  for (const std::string& name : kindNames()) {
    if (name == floorEvent) continue;
    const std::string instructions = "instructions " + name + "/";
    for (const std::size_t size : {10'000, 100'000, 1'000'000}) {
      flat.push_back({instructions + std::to_string(size), instructions + "1000"});
    }
    append(allocations, everySize("event " + name + "/* allocations"));
  }
  claims.push_back(
      {"instructions at every size, of all events", flat, Goal::withinEitherWay, 1.02});
  claims.push_back(
      {"allocations of an event, of all", allocations, Goal::valueAtMost, 0,
       "A fraction far below one is a table that is rebuilt once in a while; else the event "
       "itself allocates."});
}

void libyangClaims(std::vector<Claim>& claims) {
  const std::string misses =
      "The edit by path takes much the same at every size. The event is mostly cache misses, and a "
      "larger device has more of them.";
  for (const std::string name : {"class-map-match", "action-change"}) {
    const std::string event = "event " + name + "/";
    for (const auto& [size, limit] : {std::pair{"10000", 100.0}, std::pair{"100000", 40.0}}) {
      claims.push_back({name + " beside libyang's edit by path, at " + size,
                        {{event + size, std::string("libyang edit by path/") + size}},
                        Goal::timesFaster,
                        limit,
                        misses});
    }
    claims.push_back({name + " beside libyang's edit of a held leaf",
                      everySize(event + "*", "libyang edit of a held leaf/*"), Goal::ratioAtMost, 1,
                      "The held leaf is one object and is looked up nowhere; the event starts from "
                      "the native object."});
  }
}

void startUpClaims(std::vector<Claim>& claims) {
  const std::string built =
      "A start builds a machine and its watch for each object besides the record, in the random "
      "order of the native objects.";
  const std::string typed =
      "libyang gets a classifier's terms one after another with the parent at hand, and builds the "
      "output alone. A start finds them in random order and builds the machines, too.";
  for (const std::string what : {"a class map", "a tx queue", "a policy map's term"}) {
    claims.push_back({"start-up of " + what + " beside the floor's build",
                      everySize("start-up of " + what + "/*", "start-up floor/*"),
                      Goal::ratioAtMost, 2.5, built});
  }
  claims.push_back({"start-up of a million class maps",
                    {{"start-up of a million class maps", ""}},
                    Goal::valueAtMost,
                    1e9,
                    built});
  claims.push_back({"start-up of a class map beside libyang's typed build",
                    everySize("start-up of a class map/*", "libyang build, typed/*"),
                    Goal::timesFaster, 5, typed});
  claims.push_back(
      {"start-up of a term's whole road beside libyang's typed build",
       everySize("start-up of a term's whole road/*", "libyang build of whole terms, typed/*"),
       Goal::timesFaster, 5, typed});
  claims.push_back(
      {"bytes of a term: native, machines, output",
       everySize("memory of a class map/* whole bytes"), Goal::valueAtMost, 400,
       "The native object, its matches, the machine and the term each have a block and an "
       "entry in a collection."});
  claims.push_back({"bytes of a term's output", everySize("memory of a class map/* output bytes"),
                    Goal::valueAtMost, 200});
}

void frameworkClaims(std::vector<Claim>& claims) {
  std::vector<Pair> notify;
  for (const int size : {1, 100, 10'000, 1'000'000}) {
    notify.push_back({at("notify", size), at("virtual calls", size)});
  }
  claims.push_back({"notification beside a vector of virtual calls", notify, Goal::ratioAtMost, 1.5,
                    "Listeners may come and go during a notification. In the vector none may."});
  claims.push_back({"unsubscribe and subscribe among 1,000,000, beside among 10",
                    {{"unsubscribe and subscribe/1000000", "unsubscribe and subscribe/10"},
                     {"unsubscribe and subscribe/10000", "unsubscribe and subscribe/10"}},
                    Goal::ratioAtMost,
                    2});
  for (const std::string key : {"String", "uint32"}) {
    claims.push_back(
        {"map find by " + key + " beside std::unordered_map",
         everySize("map find, " + key + ", own/*", "map find, " + key + ", std/*"),
         Goal::ratioAtMost, 1.3,
         "A find goes from the index to a node elsewhere, so that entries never move."});
    claims.push_back({"map walk, an entry, by " + key, everySize("map walk, " + key + ", own/*"),
                      Goal::valueAtMost, 5,
                      "Each step goes to a node elsewhere, so that a walk survives any change."});
    claims.push_back({"worst insert on the way to a million, by " + key,
                      {{"map worst insert, " + key + ", own/1000000", ""}},
                      Goal::valueAtMost,
                      10e6,
                      "The index is rebuilt: a slot is written for each entry, and sixteen "
                      "megabytes are touched for the first time."});
  }
}

void textClaims(std::vector<Claim>& claims) {
  for (const char* decoder : {"decode key, by hand", "decode placeholder, by hand"}) {
    claims.push_back({decoder,
                      {{decoder, ""}},
                      Goal::valueAtMost,
                      15,
                      "Most of it is the making of the strings."});
  }
  claims.push_back({"attachment comment beside RapidJSON's default document",
                    {{"decode attachment, own", "decode attachment, default document"}},
                    Goal::ratioAtMost,
                    0.6});
  claims.push_back({"allocations of an attachment comment",
                    {{"decode attachment, own allocations", ""}},
                    Goal::valueAtMost,
                    0});
  const std::size_t size = documentMegabytes();
  const std::string translate = at("document, qosoc translate", size);
  claims.push_back({"reading a native document beside RapidJSON's own parse",
                    {{at("document, read", size), at("document, dom", size)}},
                    Goal::ratioAtMost,
                    2,
                    "Every value is checked and mounted as a native object; the parse makes a tree "
                    "of texts."});
  claims.push_back({"judging the form of a native document beside RapidJSON's bare parser",
                    {{at("document, shape", size), at("document, events", size)},
                     {at("document, shape", size), at("document, parser", size)}},
                    Goal::ratioAtMost,
                    1.3,
                    "A parser of our own runs along the schema; keys are kept as hashes."});
  claims.push_back(
      {"qosoc check beside qosoc translate",
       {{at("document, qosoc check", size), translate}},
       Goal::ratioAtMost,
       1.5,
       "Both read the document; a second pass finds the lines, where there are findings."});
  claims.push_back({"memory of qosoc translate beside the file",
                    {{translate + " peak bytes", translate + " file bytes"}},
                    Goal::ratioAtMost,
                    4,
                    "Native objects, machines and the model are there at once."});
  claims.push_back(
      {"memory of qosoc translate --feed beside qosoc translate",
       {{at("document, qosoc translate --feed", size) + " peak bytes", translate + " peak bytes"}},
       Goal::ratioAtMost,
       2});
}

std::vector<Claim> claims() {
  std::vector<Claim> all;
  eventClaims(all);
  libyangClaims(all);
  startUpClaims(all);
  frameworkClaims(all);
  textClaims(all);
  return all;
}

// ===== Results

struct Judged {
  Pair pair;
  double own;
  double rival;
  double excess;  // so many times the limit, in the bad direction
};

// Nothing when a figure wasn't measured.
std::optional<Judged> judged(const Claim& claim, const Pair& pair, const Figures& figures) {
  const auto own = figures.find(pair.own);
  if (own == figures.end()) return std::nullopt;
  Judged result{pair, own->second, 0, 0};
  if (claim.goal == Goal::valueAtMost) {
    // A limit of zero can't be divided by.
    result.excess = (result.own + 1) / (claim.limit + 1);
    return result;
  }
  const auto rival = figures.find(pair.rival);
  if (rival == figures.end()) return std::nullopt;
  result.rival = rival->second;
  const double ratio = result.own / result.rival;
  if (claim.goal == Goal::ratioAtMost) result.excess = ratio / claim.limit;
  if (claim.goal == Goal::timesFaster) result.excess = ratio * claim.limit;
  if (claim.goal == Goal::withinEitherWay) {
    result.excess = std::max(ratio, 1 / ratio) / claim.limit;
  }
  return result;
}

std::string told(const std::string& name, double value) {
  return name + ": " + measure(name, value);
}

// How far the figure is from the goal.
std::string excessOf(const Claim& claim, const Judged& worst) {
  if (worst.excess <= 1 || claim.limit == 0) return "";
  if (claim.goal == Goal::valueAtMost) return ratio(worst.own / claim.limit) + " times the goal";
  const char* words = claim.goal == Goal::timesFaster ? " times too slow" : " times the goal";
  return ratio(worst.excess) + words;
}

Verdict verdict(const Claim& claim, const Judged& worst) {
  Verdict result{claim.what,        told(worst.pair.own, worst.own), "",       "", "",
                 worst.excess <= 1, excessOf(claim, worst),          claim.why};
  if (claim.goal == Goal::valueAtMost) {
    result.goal = "<= " + measure(worst.pair.own, claim.limit);
    return result;
  }
  result.rival = told(worst.pair.rival, worst.rival);
  if (claim.goal == Goal::timesFaster) {
    result.ratio = ratio(worst.rival / worst.own) + " x faster";
    result.goal = ">= " + ratio(claim.limit);
  } else {
    result.ratio = ratio(worst.own / worst.rival);
    result.goal = (claim.goal == Goal::withinEitherWay ? "within " : "<= ") + ratio(claim.limit);
  }
  return result;
}

}  // namespace

std::vector<Verdict> verdicts(const Figures& figures) {
  std::vector<Verdict> result;
  for (const Claim& claim : claims()) {
    std::optional<Judged> worst;
    for (const Pair& pair : claim.pairs) {
      const auto one = judged(claim, pair, figures);
      if (one && (!worst || one->excess > worst->excess)) worst = one;
    }
    if (worst) result.push_back(verdict(claim, *worst));
  }
  return result;
}

}  // namespace Bench
