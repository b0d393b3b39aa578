// Everything that a model or a translator needs of the object framework.
#pragma once

#include "Rok/EnumType.h"
#include "Rok/Exceptions.h"
#include "Rok/Found.h"
#include "Rok/HashMap2018.h"
#include "Rok/Index.h"
#include "Rok/Notifier.h"
#include "Rok/Optional.h"
#include "Rok/OrderedMap.h"
#include "Rok/Ptr.h"
#include "Rok/Sassert.h"
#include "Rok/StateMachine.h"
#include "Rok/String.h"
#include "Rok/Trace.h"
#include "Rok/ValueMap.h"
#include "Rok/WalkOrder.h"
