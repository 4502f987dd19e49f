// What is measured, and what each measure has to reach. In the order of the table.
//
// A row's value is the median over its rounds [ours, theirs]: of ours / theirs, of ours - theirs where
// `difference` is set, of ours alone where `alone` is set; in `unit`. `most` is the target; a row without one
// is there to be looked at. `atLeast` names a row whose value is the floor of this one: where the floor is
// above the target, it takes the target's place.
export const ROWS = [
  { measure: 'call-many-bare', what: 'getModemLogStatus(), 64 in flight',
    against: 'bare Node-API addon', most: 1.15 },
  { measure: 'call-single-bare', what: '… one after the other', against: 'bare Node-API addon', most: 1.05 },
  { measure: 'call-many-async-worker', what: '… 64 in flight',
    against: 'node-addon-api AsyncWorker', most: 1.1 },
  { measure: 'call-single-async-worker', what: '… one after the other',
    against: 'node-addon-api AsyncWorker', most: 1.1 },
  { measure: 'items', what: 'arguments → items, 6 scalars each',
    against: 'reading Node-API calls alone', most: 2, atLeast: 'items-floor' },
  { measure: 'items-floor', what: '… what is asked for, alone', against: 'reading Node-API calls alone' },
  { measure: 'items-lists', what: 'arguments → items, 3 lists of 6',
    against: 'reading Node-API calls alone' },
  { measure: 'items-lists-floor', what: '… what is asked for, alone',
    against: 'reading Node-API calls alone' },
  { measure: 'text-jsoncpp', what: 'GetJsonParams, 10,000 parameters',
    against: 'jsoncpp StreamWriter', most: 0.33 },
  { measure: 'text-jsoncpp-fast', what: '…', against: 'jsoncpp FastWriter', most: 0.33 },
  { measure: 'text-rapidjson', what: '…', against: 'rapidjson Writer', most: 2 },
  { measure: 'reply', what: 'reply → object, 10,000 members',
    against: 'jsoncpp parse + bare loop', most: 1.2 },
  { measure: 'reply-json-parse', what: '…', against: 'JSON.parse' },
  { measure: 'payload', what: 'payload text, mixed values', against: 'insertion by hand', most: 1.3 },
  { measure: 'log-suppressed', what: 'log line below the level',
    against: 'empty variadic call', difference: true, unit: 'ns', most: 5 },
  { measure: 'log-file', what: 'log line to a file', against: 'spdlog, flushed per line', most: 1.2 },
  { measure: 'bus-round-trip', what: 'D-Bus round trip',
    against: 'plain sd-bus loop', most: 1.25, atLeast: 'bus-round-trip-floor' },
  { measure: 'bus-round-trip-floor', what: '… bare Node-API addon over sd-bus',
    against: 'plain sd-bus loop' },
  { measure: 'bus-round-trip-bare', what: '… through the module',
    against: 'bare Node-API addon over sd-bus', most: 1.25 },
  { measure: 'bus-in-flight', what: '4 calls of 100 ms in flight',
    against: 'itself', alone: true, unit: 'ms', most: 200 },
  { measure: 'text-growth', what: 'text: 100,000 parameters', against: '1,000, per parameter', most: 1.2 },
  { measure: 'items-growth', what: 'items: 100,000', against: '1,000, per item', most: 1.2 },
  { measure: 'replies-growth', what: 'replies: 100,000', against: '1,000, per reply', most: 1.2 },
  { measure: 'replies-million', what: 'replies: 1,000,000', against: '10,000, per reply', most: 1.5 },
  { measure: 'reply-growth', what: 'one reply: 100,000 members',
    against: '1,000, per member', most: 1.2, atLeast: 'reply-growth-bare' },
  { measure: 'reply-growth-bare', what: '… jsoncpp parse + bare loop', against: '1,000, per member' },
  { measure: 'reply-growth-json-parse', what: '… JSON.parse', against: '1,000, per member' },
  { measure: 'memory-in-flight', what: 'memory of a call in flight',
    against: 'itself', alone: true, unit: 'bytes' },
  { measure: 'memory-in-flight-bare', what: '… bare Node-API addon',
    against: 'itself', alone: true, unit: 'bytes' },
  { measure: 'memory-kept', what: 'memory kept of a million calls',
    against: 'bare Node-API addon', difference: true, unit: 'bytes', most: 0 },
  { measure: 'load', what: 'loading the package', against: 'package of an empty addon', difference: true,
    unit: 'ms', most: 2 },
  { measure: 'size', what: 'the packed module', against: 'itself', alone: true, unit: 'kB', most: 400 },
  { measure: 'handler', what: 'testing kit: a call to a handler', against: 'the embedded service', most: 3 },
  { measure: 'handlers-in-flight', what: '… 1,000 handlers of 1 ms',
    against: 'a fourth of their own time', most: 1.2 },
  { measure: 'handlers-kept', what: '… memory kept of a million calls',
    against: 'itself', alone: true, unit: 'bytes', most: 0 },
];

function quantile(values, fraction) {
  const sorted = [...values].sort((a, b) => a - b);
  const position = fraction * (sorted.length - 1);
  const low = Math.floor(position);
  return sorted[low] + (sorted[Math.ceil(position)] - sorted[low]) * (position - low);
}

const median = (values) => quantile(values, 0.5);

function valueOf(row, [ours, theirs]) {
  if (row.alone) {
    return ours;
  }
  return row.difference ? ours - theirs : ours / theirs;
}

// The row with its value, and its noise: half of the range in which the middle half of the rounds lies.
export function evaluate(row, rounds) {
  const values = rounds.map((round) => valueOf(row, round));
  return {
    ...row,
    unit: row.unit ?? '×',
    ours: median(rounds.map(([ours]) => ours)),
    theirs: rounds[0].length > 1 ? median(rounds.map(([, theirs]) => theirs)) : undefined,
    value: median(values),
    noise: (quantile(values, 0.75) - quantile(values, 0.25)) / 2,
  };
}

// 'ok', 'MISS', 'floor' (above the target, but as low as its floor) or '' without a target.
export function judge(result, results) {
  if (result.most === undefined) {
    return '';
  }
  if (result.value - result.noise <= result.most) {
    return 'ok';
  }
  const floor = results.find(({ measure }) => measure === result.atLeast);
  return floor && result.value - result.noise <= floor.value + floor.noise ? 'floor' : 'MISS';
}

const number = (value, unit) => value.toFixed(unit === 'bytes' || unit === 'kB' ? 0 : 2);

const NUMBERS = [2, 3]; // Columns that are aligned to the right.

export function print(results) {
  const head = ['measure', 'against', 'value', 'noise', 'target', ''];
  const lines = results.map(({ what, against, value, noise, most, unit, verdict }) => [
    what, against, `${number(value, unit)} ${unit}`, `±${number(noise, unit)}`,
    most === undefined ? '' : `≤ ${most} ${unit}`, verdict,
  ]);
  const widths = head.map((_, column) => Math.max(...[head, ...lines].map((line) => line[column].length)));
  const pad = (cell, column) =>
    (NUMBERS.includes(column) ? cell.padStart(widths[column]) : cell.padEnd(widths[column]));
  for (const line of [head, widths.map((width) => '-'.repeat(width)), ...lines]) {
    console.log(line.map(pad).join('  ').trimEnd());
  }
}
