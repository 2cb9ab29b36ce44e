// Waiting that does not depend on how fast the machine is.

/** Only what hangs takes longer. */
export const PATIENCE = 60_000;  // milliseconds

export const pause = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));

/** Asks again and again until the answer is true, or there is no hope any more. @return the answer */
export const eventually = async (ask, what) => {
  for (const start = Date.now(); ; await pause(20)) {
    const answer = await ask();
    if (answer || Date.now() - start > PATIENCE) {
      if (!answer) throw new Error(`${what} does not come true`);
      return answer;
    }
  }
};
