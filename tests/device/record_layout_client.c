/* The exchange records as a C client's compiler lays them out. */
#include "tests/device/record_layout.h"

const LayoutFact c_layout_facts[] = {ZRCFG_LAYOUT_FACTS};
const size_t c_layout_fact_count = sizeof c_layout_facts / sizeof *c_layout_facts;

void set_flags_in_c(MultiAttrNode *node, unsigned noti, unsigned flash_rw, unsigned namechange,
                    unsigned inform_tr069) {
  node->noti = noti & 15u;
  node->flash_rw = flash_rw & 1u;
  node->namechange = namechange & 1u;
  node->inform_tr069 = inform_tr069 & 1u;
}
