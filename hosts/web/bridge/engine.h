/* The embedded engine as plain C functions, a module of its own beside the field's: a page that computes runs
 * it in a worker. */
#pragma once

#include "hosts/web/bridge/bridge_buffers.h"

/* Raised whenever a call or a number below changes its meaning. */
#define ZOLT_ENGINE_VERSION 1

#ifdef __cplusplus
extern "C" {
#endif

int32_t zolt_engine_version(void);
enum ZoltOperationE {
  ZOLT_EVALUATE = 1,
  ZOLT_APPROXIMATE = 2,
  ZOLT_SIMPLIFY = 4,
  ZOLT_EXPAND = 8,
  ZOLT_FACTOR = 16,
  ZOLT_SOLVE = 32,
  ZOLT_DIFFERENTIATE = 64,
  ZOLT_INTEGRATE = 128,
  ZOLT_SUBSTITUTE = 256
};
enum ZoltOutcomeE { ZOLT_VALUE, ZOLT_UNEVALUATED, ZOLT_NO_VALUE, ZOLT_MALFORMED };
/* Computes, for so many milliseconds at most. The text has one after another, in these lengths: the
 * expression in prefix text, the variable (of an equation to be solved, a derivative, an antiderivative, a
 * substitution), the value to be substituted. `digits` are those of an approximate value, `degrees` 1 says
 * what angles are in. Answers with a `ZoltOutcomeE`; the text is the value in prefix text, or a sentence that
 * says why there is none. Numbers: how many digits of it are certain, -1 for an exact value; the part of the
 * expression that the sentence is about, by its number in prefix order, or -1. What an expression defines, "a
 * := 2", later ones know. */
int32_t zolt_compute(int32_t operation, int32_t expression, int32_t variable, int32_t value, int32_t digits,
                     int32_t degrees, int32_t milliseconds);
/* Forgets what is defined. */
void zolt_forget(void);

#ifdef __cplusplus
}
#endif
