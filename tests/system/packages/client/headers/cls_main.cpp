#include <latchkey/cls_main.h>

bool Use_cls_main() {
  const latchkey::clsMain main;
  return !main.ErrorExists() && main.AppErrorDescription().empty();
}
