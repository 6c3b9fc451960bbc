#include "tex/measure_args.h"

#include <memory>

#include "format/unit_node.h"
#include "framework/util.h"
#include "tex/token_source.h"

namespace {
// Reads a measure between open and close if the next token is open; with
// bOptional a missing opener answers null, else the measure is read bare.
TFmtUnitNode* ReadMeasure(TTexTokenSource& source, char open, char close, int bOptional) {
  auto unit = std::make_unique<TFmtUnitNode>(0, 1, k_UnitNone);
  std::unique_ptr<TTexToken> token(source.NextToken(1, 1));
  if (!token || !token->IsCharacter(open)) {
    source.PutBack(token.release());
    if (bOptional) return nullptr;
    unit->ParseTex(source);
    return unit.release();
  }
  unit->ParseTex(source);
  token.reset(source.NextToken(1, 1));
  if (!token || !token->IsCharacter(close)) {
    // The token in the closer's place goes, so that the reader cannot loop
    // on it; the measure read so far stands.
    if (close == '}')
      TRACE("did not get '}'\n");
    else
      TRACE("did not get ']'\n");
  }
  return unit.release();
}
}  // namespace

TFmtUnitNode* NextTexMeasureArg(TTexTokenSource& source) { return ReadMeasure(source, '{', '}', 0); }

TFmtUnitNode* NextTexOptionalMeasureArg(TTexTokenSource& source) { return ReadMeasure(source, '[', ']', 1); }
