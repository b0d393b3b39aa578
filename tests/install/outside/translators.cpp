// Links the translators without the host.
#include "Dorpel/Slab.h"
#include "QosOpenConfig/QosOpenConfigHelper.h"

int main() { return Dorpel::slabUse().blocks == 0 ? 0 : 1; }
