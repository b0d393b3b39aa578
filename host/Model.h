// The output side: the OpenConfig records that the roots write.
#pragma once

#include "Rok/Rok.h"
#include "models/openconfig/Classifier.h"

namespace host {

struct Model {
  Rok::Ptr<QosOc::Config::ClassifiersDir> classifiers = Rok::make<QosOc::Config::ClassifiersDir>();
};

}  // namespace host
