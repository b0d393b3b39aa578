#include "host/model/Parts.h"

namespace host {

const std::vector<ModelPart>& modelParts() {
  static const std::vector<ModelPart> table{
      classifiersPart(),
      forwardingGroupsPart(),
      interfacesPart(),
      pfcPart(),
      queueManagementProfilesPart(),
      queuesPart(),
      schedulerPoliciesPart(),
  };
  return table;
}

}  // namespace host
