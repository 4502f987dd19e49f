'use strict';

// What can be wrong with what a method of a log service answers: { verdict, received, expected }.

const { MISSING, brief } = require('./break_off.js');

const wrong = (received, expected) => ({ verdict: 'wrong', received, expected });

const isObject = (value) => value !== null && typeof value === 'object' && !Array.isArray(value);

// The value of a JSON text; undefined when it is none.
function parsed(text) {
  try {
    return JSON.parse(text);
  } catch {
    return undefined;
  }
}

// What an answer is shown as.
function shown(answer) {
  if (answer === undefined) {
    return 'no answer';
  }
  return typeof answer === 'string' && answer !== '' ? answer : JSON.stringify(answer);
}

// What the text of an item should have been; undefined when nothing is wrong with it.
function expectedOfItem(text, isSetting) {
  const item = parsed(text);
  if (!isObject(item)) {
    return 'the JSON text of an object';
  }
  if (typeof item.configKey !== 'string' || typeof item.value !== 'string') {
    return 'a "configKey" and a "value", both strings';
  }
  return isSetting && !isObject(parsed(item.value))
    ? 'a "value" that is the JSON text of an object'
    : undefined;
}

function ofItems(texts, isSetting) {
  for (const text of texts) {
    const expected = expectedOfItem(text, isSetting);
    if (expected) {
      return wrong(text, expected);
    }
  }
  return undefined;
}

const ofSettings = (texts) =>
  (texts.length === 1 ? ofItems(texts, true) : wrong(`${texts.length} texts`, 'one text for each key: 1'));

const ofMasks = (texts) =>
  (texts.length > 0 ? ofItems(texts, false) : wrong('an empty list', 'at least one text'));

const ofResult = (result) => (result === true ? undefined : wrong(shown(result), 'true'));

// What is wrong with the answers of these methods, besides their types. Those of the others may be anything.
const OF_ANSWERS = {
  GetModemLogConfig: ofSettings,
  GetModemLogLogMasks: ofMasks,
  HandleModemLogSwitch: ofResult,
  HandleModemLogSwitchWithConfigs: ofResult,
  SendModemLogCommand: ofResult,
  ChangeModemLogConfig: ofResult,
  GetTcpdumpConfig: ofSettings,
  ChangeTcpdumpConfig: ofResult,
  HandleTcpdumpSwitch: ofResult,
  HandleTcpdumpSwitchWithConfigs: ofResult,
};

function ofBreakOff({ text, error, received, expected }) {
  if (expected) {
    return wrong(`the types "${received}"`, `the types "${expected}"`);
  }
  return MISSING.includes(error)
    ? { verdict: 'missing', received: brief(text) }
    : wrong(brief(text), 'an answer');
}

// What is wrong with a method of which a request came to this; undefined when nothing is.
function faultOf({ method, answer: type }, { code, answer, why }) {
  if (why) {
    return ofBreakOff(why);
  }
  if (code !== 0) {
    return wrong(`code ${code}${answer === undefined ? '' : ` and ${shown(answer)}`}`, 'code 0');
  }
  if (answer === undefined && type !== 'nothing') {
    return wrong(shown(answer), type);
  }
  return OF_ANSWERS[method]?.(answer);
}

module.exports = { faultOf, shown, wrong };
