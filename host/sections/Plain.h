// The forms of plain records, which never change: a write of a member is a write of another record.
#pragma once

#include "host/sections/Forms.h"

namespace host {

// A record that is being read or made. It has settings like any object.
template <class T>
struct Plain final : Rok::PtrInterface {
  using Type = T;
  explicit Plain(const T& v = T()) : record(v) {}
  T record;
};

template <class T, class V>
T recordOf(V T::*member);

template <auto first, auto... further>
auto& memberOf(auto& record) {
  return ((record.*first).*....*further);
}

// A scalar of the record: a member, or a member of a member.
template <auto first, auto... further>
constexpr auto field(std::string_view name) {
  using Object = Plain<decltype(recordOf(first))>;
  using Scalar = ScalarForm<std::remove_reference_t<decltype(memberOf<first, further...>(
      std::declval<Object&>().record))>>;
  return Setting<Object>{
      name, [](const Rok::Ptr<Object>& /*fresh*/) { return Scalar::schema(); },
      [](const Rok::Ptr<Object>& object) -> std::unique_ptr<Place> {
        return std::make_unique<LeafPlace>(
            Scalar::value(memberOf<first, further...>(object->record)));
      },
      [](const Rok::Ptr<Object>& object, const Value& value, Writes& /*writes*/) {
        memberOf<first, further...>(object->record) = Scalar::native(value);
      }};
}

// The place of a record. `write` writes another one.
template <const auto& settings>
class PlainPlace final : public Record<settings> {
  using Base = Record<settings>;
  using T = typename Base::Object::Type;

 public:
  using Write = std::function<void(const T& record, Writes& writes)>;
  PlainPlace(const T& record, Write write)
      : Base(Rok::make<Plain<T>>(record)), write_(std::move(write)) {}

  static Schema schema() { return Base::schema(Rok::make<Plain<T>>()); }

  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    Base::put(name, value, writes);
    write_(this->object().record, writes);
  }

 private:
  Write write_;
};

// The record that a value describes.
template <const auto& settings>
auto plain(const Value& value, Writes& writes) {
  const auto told = Rok::make<typename Record<settings>::Object>();
  fill<Record<settings>>(told, value, writes);
  return told;
}

// An object that is nothing but a record. It may be null.
template <auto get, auto set, const auto& settings>
constexpr auto block(std::string_view name) {
  using Owner = typename Takes<decltype(set)>::Object;
  using Held = typename Takes<decltype(set)>::Argument;
  using Block = std::remove_cvref_t<decltype(*Held())>;
  return Setting<Owner>{
      name, [](const Rok::Ptr<Owner>& /*fresh*/) { return PlainPlace<settings>::schema(); },
      [](const Rok::Ptr<Owner>& owner) -> std::unique_ptr<Place> {
        const Held& held = std::invoke(get, *owner);
        const auto write = [owner](const auto& record, Writes& writes) {
          writes([&] { std::invoke(set, *owner, Rok::make<Block>(record)); });
        };
        return held ? std::make_unique<PlainPlace<settings>>(held->settings(), write) : nullptr;
      },
      [](const Rok::Ptr<Owner>& owner, const Value& value, Writes& writes) {
        Held held;
        if (!value.isNull()) held = Rok::make<Block>(plain<settings>(value, writes)->record);
        writes([&] { std::invoke(set, *owner, held); });
      }};
}

}  // namespace host
