// What the declaration takes from the platform's SDK.
export interface Callback<T> {
  (data: T): void;
}
