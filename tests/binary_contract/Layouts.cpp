// Makes a compiler lay out the table of every interface, which a call through one
// needs, so that it prints them. The offsets of the records are proven by their
// headers, for whatever compiler takes them.
#include "interfaces/HaldenReaderHighLevelAPI.h"
#include "interfaces/ModuleEntry.h"
#include "interfaces/ReaderAamvaData.h"
#include "interfaces/ReaderBarcodeData.h"
#include "interfaces/ReaderCodelineData.h"
#include "interfaces/ReaderSwipeData.h"
#include "interfaces/ResultCode.h"

namespace conduit {

void LayOut(IModule& module, IInputModule& inputModule, IModuleLogger& logger,
            IInputModuleHost& host, IStringMap& map) {
  module.SetParameter("", "");
  inputModule.Initialise();
  logger.Log(0, "", "");
  host.BeginData();
  map.RemoveAll();
}

}  // namespace conduit
