// What `call` answers, by promise or, if it takes one, by callback. A rejection with an Error that names the
// call when it is refused, or when it has not answered in time; what the call itself throws or rejects with
// is passed on.
export function within(milliseconds, name, call) {
  const takesCallback = call.length > 0;
  return new Promise((resolve, reject) => {
    const timer = setTimeout(() => {
      reject(new Error(`${name} did not answer within ${milliseconds} ms`));
    }, milliseconds);
    const answer = (value) => {
      clearTimeout(timer);
      resolve(value);
    };
    const fail = (error) => {
      clearTimeout(timer);
      reject(error);
    };
    try {
      const promise = call(answer);
      if (promise) {
        promise.then(answer, fail);
      } else if (!takesCallback) {
        fail(new Error(`${name} was refused: the log says why`));
      }
    } catch (error) {
      // The two queries that are not supported throw this, and still call back.
      if (!takesCallback || error?.code !== '6') {
        fail(error);
      }
    }
  });
}
