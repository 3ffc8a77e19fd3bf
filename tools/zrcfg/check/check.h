// A check of the store: what its steps share, and the steps, one for each family of problems.
#ifndef ZRCFG_TOOLS_ZRCFG_CHECK_CHECK_H_
#define ZRCFG_TOOLS_ZRCFG_CHECK_CHECK_H_

#include "core/property_file.h"
#include "tools/store/object_place.h"
#include "tools/store/stored_object.h"
#include "tools/zrcfg/check/filters.h"
#include "tools/zrcfg/check/findings.h"
#include "tools/zrcfg/check/object_lock.h"
#include "tools/zrcfg/text_set.h"

namespace zrcfg_tool {

struct Check {
  Check(int root, bool repairing, int wait, Form form)
      : root_fd(root), repair(repairing), findings(form), locks(root, wait) {}

  int root_fd;  // The store's root directory.
  bool repair;
  Findings findings;
  Filters filters;
  LockTaker locks;
  TextSet half_copied;  // URLs of instances that are reported as a whole.
  bool found_object = false;
};

// An object with the template that it is, or should be, a copy of. A step that reads both holds the
// one lock that they share.
struct Subject {
  const zrcfg_store::ObjectPlace &place;
  zrcfg_store::StoredObject object;
  bool has_template = false;
  zrcfg_store::ObjectPlace template_place;
  zrcfg_store::StoredObject template_object;
};

// A parameter's path, for findings.
struct ParameterPath {
  char text[zrcfg::kUrlSize + zrcfg::kNameSize];

  ParameterPath(const zrcfg_store::ObjectPlace &place, const zrcfg::ParamRecord &record);
};

// Checks one object; nothing is locked before or behind. `header` receives its header, and the
// result says whether there is one.
bool check_object(Check &check, const zrcfg_store::ObjectPlace &place, zrcfg::ObjectHeader &header);

// The property file as a whole. Whether its records and values can be looked at.
bool find_file_problems(Check &check, const zrcfg_store::ObjectPlace &place,
                        const zrcfg_store::StoredObject &object);
// Names and texts in header and records.
void find_name_problems(Check &check, const zrcfg_store::ObjectPlace &place,
                        const zrcfg_store::StoredObject &object);
// The value lines, and the values.
void find_value_problems(Check &check, const zrcfg_store::ObjectPlace &place,
                         const zrcfg_store::StoredObject &object);
// What differs from the template.
void find_template_problems(Check &check, const Subject &subject);
// What does not belong into the object's directory. Nothing is locked.
void find_stray_entries(Check &check, const zrcfg_store::ObjectPlace &place);

// Repairs the value lines, under the object's exclusive lock, and says so in the findings.
void repair_values(Check &check, const Subject &subject);

// Checks the table, if the object is one: template, instances, counter. Nothing is locked.
void check_table(Check &check, const zrcfg_store::ObjectPlace &place,
                 const zrcfg::ObjectHeader &header);

// Finds the place of the template's object that an object of an instance was copied from.
bool find_template(int root_fd, const zrcfg_store::ObjectPlace &place,
                   zrcfg_store::ObjectPlace &template_place);

bool directory_exists(int root_fd, const char *path);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_CHECK_CHECK_H_
