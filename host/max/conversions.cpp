#include "host/max/conversions.h"

#include <point3.h>

namespace hublet {
namespace max_binding {

Matrix3 ToMatrix3(const Matrix43& matrix) {
  Matrix3 result;
  for (int row = 0; row < 4; ++row) result.SetRow(row, Point3(matrix.m[row][0], matrix.m[row][1], matrix.m[row][2]));
  result.ValidateFlags();
  return result;
}

Matrix43 ToMatrix43(const Matrix3& matrix) {
  Matrix43 result;
  for (int row = 0; row < 4; ++row) {
    const Point3 p = matrix.GetRow(row);
    result.m[row][0] = p.x;
    result.m[row][1] = p.y;
    result.m[row][2] = p.z;
  }
  return result;
}

}  // namespace max_binding
}  // namespace hublet
