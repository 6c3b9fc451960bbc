// The argument readers that produce dimensions: a measure, braced or not,
// and an optional one in brackets.
#pragma once

class TFmtUnitNode;
class TTexTokenSource;

// A TFmtUnitNode (owned by the caller, never null): "{measure}" or a bare
// measure. A missing "}" is traced and the token in its place is dropped.
TFmtUnitNode* NextTexMeasureArg(TTexTokenSource& source);
// "[measure]" as a TFmtUnitNode owned by the caller, or null with no "[".
TFmtUnitNode* NextTexOptionalMeasureArg(TTexTokenSource& source);
