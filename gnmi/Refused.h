// Why a request is not served.
#pragma once

#include <grpcpp/support/status_code_enum.h>

#include <stdexcept>
#include <string>

namespace server {

// The answer that a bad request gets; the text begins with the field that is bad.
class Refused : public std::runtime_error {
 public:
  Refused(grpc::StatusCode code, const std::string& text) : std::runtime_error(text), code_(code) {}

  grpc::StatusCode code() const { return code_; }

 private:
  grpc::StatusCode code_;
};

}  // namespace server
