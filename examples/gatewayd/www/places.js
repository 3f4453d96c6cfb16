// A place in the URL for every area and group: "#/wifi/radios/0" is the first radio, "#/" the
// overview. Back, Forward and reload come to the same place again.
//
// Entries of the browser's history are numbered, so that a move that somebody takes back can be
// undone in the right direction.

export const hrefOf = (area, path = []) =>
  "#/" +
  [area, ...path]
    .filter((step) => step !== null)
    .map(encodeURIComponent)
    .join("/");

function decoded(step) {
  try {
    return decodeURIComponent(step);
  } catch {
    return step;
  }
}

// The place of the address bar.
export function here() {
  const [area = "", ...path] = location.hash
    .replace(/^#\/?/, "")
    .split("/")
    .filter(Boolean)
    .map(decoded);
  return { area: area === "" ? null : area, path };
}

// Calls show(place) for each new place, after mayLeave(place) has agreed.
export function follow(mayLeave, show) {
  let last = history.state && history.state.n ? history.state.n : 1;
  let isAsking = false;
  let isReturning = false;
  history.replaceState({ n: last }, "");
  window.addEventListener("hashchange", async () => {
    if (!history.state || !history.state.n) {
      history.replaceState({ n: last + 1 }, "");
    }
    if (isReturning || isAsking) {
      isReturning = false;
      return;
    }
    isAsking = true;
    const agreed = await mayLeave(here());
    isAsking = false;
    const distance = last - history.state.n;
    if (agreed) {
      last = history.state.n;
      show(here());
    } else if (distance !== 0) {
      isReturning = true;
      history.go(distance);
    }
  });
}
