#include <latchkey/cls_timer.h>

bool Use_cls_timer() {
  latchkey::clsTimer timer;
  timer.Start();
  return timer.GetElapsedTime() >= 0;
}
