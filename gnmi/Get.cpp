#include "gnmi/Get.h"

#include <algorithm>

#include "gnmi/Filter.h"
#include "gnmi/Refused.h"
#include "gnmi/Request.h"

namespace server {
namespace {

using grpc::StatusCode;
using host::Keys;

// What is asked for of each record.
enum class DataType { all, config, state };

// STATE and OPERATIONAL are what is no configuration: a view may show that beside it.
DataType typeOf(const gnmi::GetRequest& request) {
  switch (request.type()) {
    case gnmi::GetRequest::ALL:
      return DataType::all;
    case gnmi::GetRequest::CONFIG:
      return DataType::config;
    case gnmi::GetRequest::STATE:
    case gnmi::GetRequest::OPERATIONAL:
      return DataType::state;
    default:
      break;
  }
  throw Refused(StatusCode::INVALID_ARGUMENT,
                "type: there is no type " + std::to_string(request.type()));
}

using VisitImage = std::function<void(const host::RecordAt& at, RowSet rows)>;

// The records of a snapshot that a path takes in, with the rows of them.
void eachImage(const host::ImageIndex& images, const Filter& filter, const VisitImage& visit) {
  Keys keys;
  for (const std::string& range : filter.ranges()) {
    for (auto at = images.atOrBehind(range); !images.isEnd(at); at = images.next(at)) {
      const host::Image& image = images.at(at);
      if (!image.name().starts_with(range)) break;
      if (image.isGone()) continue;
      image.keys(keys);
      const RowSet rows = filter.rows(image.kind(), keys);
      if (rows != 0) visit(image.at(keys), rows);
    }
  }
}

// Where a node stands, as answers have it: below the last list on its way.
struct NodePlace {
  explicit NodePlace(const Path::Top& top) {
    for (const host::Node* node : top.way) {
      if (node->list != nullptr) {
        kind = node->list;
        below.clear();
        continue;
      }
      if (!below.empty()) below += '/';
      below += node->name;
    }
  }

  const host::RecordKind* kind = nullptr;
  std::string below;
};

// The nodes that one top of a path names, each as a JSON value.
class Subtrees {
 public:
  Subtrees(Wire& wire, const host::View& view, const Path::Top& top, std::string& body)
      : wire_(wire), view_(view), top_(top), place_(top), body_(body) {}
  ~Subtrees() { end(); }
  Subtrees(const Subtrees&) = delete;
  Subtrees& operator=(const Subtrees&) = delete;

  void add(const host::RecordAt& at, RowSet rows) {
    if (top_.names() == Path::Names::leaf) {
      wire_.updates(body_, at, rows);
      return;
    }
    const auto own = std::span(at.keys).first(top_.keys.size());
    if (!node_ || !std::equal(own.begin(), own.end(), texts_.begin(), texts_.end())) {
      end();
      texts_.assign(own.begin(), own.end());
      node_.emplace(view_, wire_.style(), top_.way.size());
    }
    node_->add(at, rows);
  }

 private:
  void end() {
    if (!node_) return;
    const Keys keys(texts_.begin(), texts_.end());
    if (!node_->isEmpty()) wire_.jsonUpdate(body_, place_.kind, keys, place_.below, node_->take());
    node_.reset();
  }

  Wire& wire_;
  const host::View& view_;
  const Path::Top& top_;
  const NodePlace place_;
  std::string& body_;
  std::optional<host::NodeJson> node_;
  std::vector<std::string> texts_;  // the keys on the way to the node
};

class Answer {
 public:
  Answer(const gnmi::GetRequest& request, const host::Store& store, const host::View& view)
      : request_(request),
        view_(view),
        depth_(depthOf(request.extension())),
        type_(typeOf(request)),
        encoding_(encodingOf(request.encoding())),
        wire_(view, encoding_) {
    checkModels(request.use_models(), "use_models", view);
    std::vector<Path> paths;
    for (int i = 0; i < request.path_size(); ++i) {
      paths.emplace_back(Path::Asked{request.prefix(), request.path(i), fieldOf(i)}, view);
    }
    // A prefix alone names what is asked for, too.
    if (paths.empty()) paths.emplace_back(Path::Asked{request.prefix(), {}, "prefix"}, view);
    all_ = store.snapshot();
    for (std::size_t i = 0; i < paths.size(); ++i) add(paths[i], static_cast<int>(i));
  }
  std::string take() { return std::move(text_); }

 private:
  static std::string fieldOf(int number) { return "path[" + std::to_string(number) + ']'; }

  void add(const Path& path, int number) {
    std::string body;
    bool isThere = !path.isOne() || path.tops()[0].way.empty();
    for (const Path::Top& top : path.tops()) isThere |= addTop(top, body);
    if (!isThere) throw Refused(StatusCode::NOT_FOUND, fieldOf(number) + ": it is not there");
    std::string_view origin = request_.prefix().origin();
    if (origin.empty() && number < request_.path_size()) origin = request_.path(number).origin();
    const std::string head =
        notificationHead(all_.head.timestamp, {origin, request_.prefix().target()});
    text_ += messageHead(head.size() + body.size());
    text_ += head;
    text_ += body;
  }

  // Returns whether there is anything, at whatever depth and of whatever type.
  bool addTop(const Path::Top& top, std::string& body) {
    const Filter filter({Path(top, 0, view_)}, {});
    const Filter shallow({Path(top, depth_, view_)}, {});
    Subtrees subtrees(wire_, view_, top, body);
    bool isThere = false;
    eachImage(all_.images, filter, [&](const host::RecordAt& at, RowSet rows) {
      isThere |= hasAny(at, rows);
      if (depth_ != 0) rows &= shallow.rows(at.kind, at.keys);
      rows &= ofType(at.kind);
      if (rows == 0) return;
      if (encoding_ == Wire::Encoding::proto) {
        wire_.updates(body, at, rows);
      } else {
        subtrees.add(at, rows);
      }
    });
    return isThere;
  }

  bool hasAny(const host::RecordAt& at, RowSet rows) const {
    const auto all = view_.rows(at.kind);
    for (std::size_t i = 0; i < all.size(); ++i) {
      if ((rows >> i & 1) != 0 && !host::isAbsent(at.leaf(all[i].leaf))) return true;
    }
    return false;
  }

  RowSet ofType(const host::RecordKind& kind) const {
    if (type_ == DataType::all) return host::allRows;
    RowSet mirrors = 0;
    const auto all = view_.rows(kind);
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (all[i].isMirror) mirrors |= RowSet{1} << i;
    }
    return type_ == DataType::state ? mirrors : ~mirrors;
  }

  const gnmi::GetRequest& request_;
  const host::View& view_;
  const std::size_t depth_;
  const DataType type_;
  const Wire::Encoding encoding_;
  Wire wire_;
  host::Store::Snapshot all_;
  std::string text_;
};

}  // namespace

std::string getAnswer(const gnmi::GetRequest& request, const host::Store& store,
                      const host::View& view) {
  return Answer(request, store, view).take();
}

}  // namespace server
