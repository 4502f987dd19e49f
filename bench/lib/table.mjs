// What is measured, and what each measure has to reach. In the order of the table.
//
// A row's value is the median over its rounds [ours, theirs]: of ours / theirs, of ours - theirs where
// `difference` is set, of ours alone where `alone` is set; in `unit`. `most` is the target.
export const ROWS = [
  { measure: 'call-many', what: 'getModemLogStatus(), 64 in flight',
    against: 'bare Node-API addon', most: 1.1 },
  { measure: 'call-single', what: '… one after the other', against: 'bare Node-API addon', most: 1.05 },
  { measure: 'bus', what: '… over D-Bus', against: 'bare Node-API addon over sd-bus', most: 1.05 },
  { measure: 'items', what: 'arguments → items, 6 scalars each',
    against: 'what is asked for, alone', most: 1.1 },
  { measure: 'items-lists', what: 'arguments → items, 3 lists of 6',
    against: 'what is asked for, alone', most: 1.1 },
  { measure: 'items-growth', what: 'items: 100,000', against: '1,000, per item', most: 1.2 },
  { measure: 'text', what: 'GetJsonParams, 10,000 parameters', against: 'rapidjson Writer', most: 1.6 },
  { measure: 'text-growth', what: '… 100,000 parameters', against: '1,000, per parameter', most: 1.2 },
  { measure: 'reply', what: 'reply → object, 10,000 members',
    against: 'jsoncpp parse + bare loop', most: 1.15 },
  { measure: 'replies-growth', what: 'replies: 100,000', against: '1,000, per reply', most: 1.2 },
  { measure: 'replies-million', what: 'replies: 1,000,000', against: '10,000, per reply', most: 1.5 },
  { measure: 'log-suppressed', what: 'log line below the level',
    against: 'empty variadic call', difference: true, unit: 'ns', most: 5 },
  { measure: 'log-file', what: 'log line to a file', against: 'spdlog, flushed per line', most: 1 },
  { measure: 'memory-kept', what: 'memory kept of a million calls',
    against: 'bare Node-API addon', difference: true, unit: 'bytes', most: 0 },
  { measure: 'load', what: 'loading the package', against: 'package of an empty addon', difference: true,
    unit: 'ms', most: 2 },
  { measure: 'size', what: 'the packed module', against: 'itself', alone: true, unit: 'kB', most: 400 },
  { measure: 'handler', what: 'testing kit: a call to a handler', against: 'the embedded service', most: 3 },
  { measure: 'handlers-in-flight', what: '… 1,000 handlers of 1 ms',
    against: 'a fourth of their own time', most: 1.2 },
  { measure: 'handlers-kept', what: '… memory kept of a million calls',
    against: 'the embedded service', difference: true, unit: 'bytes', most: 0 },
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

// The row with its value, its noise (half of the range in which the middle half of the rounds lies) and its
// verdict.
export function evaluate(row, rounds) {
  const values = rounds.map((round) => valueOf(row, round));
  const result = {
    ...row,
    unit: row.unit ?? '×',
    ours: median(rounds.map(([ours]) => ours)),
    theirs: rounds[0].length > 1 ? median(rounds.map(([, theirs]) => theirs)) : undefined,
    value: median(values),
    noise: (quantile(values, 0.75) - quantile(values, 0.25)) / 2,
  };
  return { ...result, verdict: judge(result) };
}

// Whether the rounds say too little. What should be nothing has no tenth.
export const isNoisy = ({ value, noise, most }) => most !== 0 && noise > Math.abs(value) / 10;

// 'MISS' when the value is above the target by more than the noise.
const judge = ({ value, noise, most }) => (value - noise <= most ? 'ok' : 'MISS');

const number = (value, unit) => value.toFixed(unit === 'bytes' || unit === 'kB' ? 0 : 2);

const NUMBERS = [2, 3]; // Columns that are aligned to the right.

export function print(results) {
  const head = ['measure', 'against', 'value', 'noise', 'target', ''];
  const lines = results.map(({ what, against, value, noise, most, unit, verdict }) => [
    what, against, `${number(value, unit)} ${unit}`, `±${number(noise, unit)}`,
    `≤ ${most} ${unit}`, verdict,
  ]);
  const widths = head.map((_, column) => Math.max(...[head, ...lines].map((line) => line[column].length)));
  const pad = (cell, column) =>
    (NUMBERS.includes(column) ? cell.padStart(widths[column]) : cell.padEnd(widths[column]));
  for (const line of [head, widths.map((width) => '-'.repeat(width)), ...lines]) {
    console.log(line.map(pad).join('  ').trimEnd());
  }
}
