// The synthetic net lines of a plate, one for each shape side. Not installed.
#pragma once

class CGjNetLine;
class CGjNetNode;
class CGouJianEx;
class CGridDataBase;

namespace side_line {

/// Who makes them: the plate's own data base, so that with two models each draws identities of its own; that of the
/// process for a plate which has none yet. Null when there is no net at all.
CGridDataBase* OwnerFor(const CGouJianEx& plate);

/// A line between the nodes, as CreateNetLineObj makes it; never null, also without a data base.
CGjNetLine* Make(CGridDataBase* db, CGjNetNode* a, CGjNetNode* b, int arc, float bulge);
/// Has the line be the whole circle.
void BecomeFullCircle(CGjNetLine& line, float cx, float cy, float r);
CGjNetLine* Copy(CGridDataBase* db, const CGjNetLine& source);

}  // namespace side_line
