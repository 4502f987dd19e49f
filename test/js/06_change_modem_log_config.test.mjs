import {
  AWAY, calls, changeTests, E, FAILS, FAILS_NO, ITEMS, NO, READ, TEXT, W, WRITTEN,
} from '../support/cases.mjs';

const name = 'changeModemLogConfig';
const op = 'ChangeModemLogConfig';
const FAILED = E("ChangeModemLogConfigCallback: asyncContext's resolved is false");
const EMPTY = W('[ChangeModemLogConfig]"configs is empty."');

changeTests(name, { refused: op });

calls('delivers the boolean of a failure or an empty list', name, [
  [FAILS, () => [ITEMS], { rejected: true }, [[op, [TEXT]]], [...READ, WRITTEN, FAILED]],
  [FAILS_NO, () => [ITEMS], { rejected: false }, [[op, [TEXT]]], [...READ, WRITTEN, FAILED]],
  [AWAY, () => [ITEMS], { rejected: false }, [], [...READ, W(`[${op}]"get proxy fail."`), FAILED]],
  [FAILS, () => [[]], { rejected: false }, [], [EMPTY, FAILED]],
]);

const texts = [
  '{"configKey":"b","value":{"l":[1,"2"]}}', '{"configKey":"","value":}}', '{"configKey":"a","value":}}',
];
const list = [{ configKey: 'b', value: { l: [1, 2], o: {} } }, 5, { configKey: 'a', value: { no: null } }];
calls('sends one text per item, in order, even for invalid items', name, [
  [NO, () => [list], { resolved: false }, [[op, texts]]],
]);
